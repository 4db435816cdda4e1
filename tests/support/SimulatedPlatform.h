#pragma once

#include "base/Log.h"
#include "platform/Platform.h"
#include "support/SimulatedKeys.h"
#include "support/SimulatedStorage.h"
#include "support/SimulatedSurface.h"

namespace brindle::test {

/// A desktop in memory. The program sees it through `Platform`; a test plays the user and the other programs through
/// the members. Every effect is one line of the journal.
class SimulatedPlatform : public Platform {
public:
    /// Becomes the platform of this process and takes the log's lines into the journal, until it is destroyed.
    SimulatedPlatform() {
        setPlatform(this);
        setLogSink([this](std::string_view line) { journal.add("log " + std::string(line)); });
    }
    ~SimulatedPlatform() override {
        queue.advance(2);  // what lives as long as the process ends its timed steps
        setLogSink({});
        setPlatform(nullptr);
    }

    AccessibilityTrust& accessibilityTrust() override { return trust; }
    Application& application() override { return self; }
    Bundle& bundle() override { return package; }
    ColorSchemes& colorSchemes() override { return schemes; }
    DefaultsStore& defaults() override { return store; }
    EventTaps& eventTaps() override { return taps; }
    HotKeys& hotKeys() override { return shortcuts; }
    KeyEvents& keyEvents() override { return keyboard; }
    LoginItem& loginItem() override { return login; }
    MainQueue& mainQueue() override { return queue; }
    MouseMonitor& mouseMonitor() override { return mouse; }
    Pasteboard& pasteboard() override { return clipboard; }
    Popovers& popovers() override { return popoverPlace; }
    SingleInstance& singleInstance() override { return instance; }
    StatusBar& statusBar() override { return tray; }
    SystemInformation& systemInformation() override { return machine; }
    Workspace& workspace() override { return desktop; }

private:
    Clock clock_;

public:
    Journal journal{clock_};
    SimulatedMainQueue queue{clock_, journal};
    SimulatedTrust trust{journal};
    SimulatedBundle package;
    SimulatedColorSchemes schemes;
    SimulatedDefaults store{journal};
    SimulatedLoginItem login{journal};
    SimulatedSingleInstance instance;
    SimulatedSystemInformation machine;
    SimulatedWorkspace desktop{journal, queue};
    SimulatedOwnApplication self{journal, desktop};
    SimulatedPasteboard clipboard{journal, queue};
    SimulatedMouse mouse{journal};
    SimulatedKeyEvents keyboard{journal, desktop, clipboard};
    SimulatedEventTaps taps{journal};
    SimulatedHotKeys shortcuts{journal};
    SimulatedPopovers popoverPlace{journal, desktop, self};
    SimulatedStatusBar tray{journal, self};
};

}  // namespace brindle::test
