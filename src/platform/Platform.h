#pragma once

namespace brindle {

class AccessibilityTrust;
class Application;
class Bundle;
class ColorSchemes;
class DefaultsStore;
class EventTaps;
class HotKeys;
class KeyEvents;
class LoginItem;
class MainQueue;
class MouseMonitor;
class Pasteboard;
class Popovers;
class SingleInstance;
class StatusBar;
class SystemInformation;
class Workspace;

/// The desktop, capability by capability. Every operation belongs to the main thread.
class Platform {
public:
    virtual ~Platform() = default;

    virtual AccessibilityTrust& accessibilityTrust() = 0;
    virtual Application& application() = 0;
    virtual Bundle& bundle() = 0;
    virtual ColorSchemes& colorSchemes() = 0;
    virtual DefaultsStore& defaults() = 0;
    virtual EventTaps& eventTaps() = 0;
    virtual HotKeys& hotKeys() = 0;
    virtual KeyEvents& keyEvents() = 0;
    virtual LoginItem& loginItem() = 0;
    virtual MainQueue& mainQueue() = 0;
    virtual MouseMonitor& mouseMonitor() = 0;
    virtual Pasteboard& pasteboard() = 0;
    virtual Popovers& popovers() = 0;
    virtual SingleInstance& singleInstance() = 0;
    virtual StatusBar& statusBar() = 0;
    virtual SystemInformation& systemInformation() = 0;
    virtual Workspace& workspace() = 0;
};

/// The platform that this process runs on. Only between `setPlatform` with one and `setPlatform` with null.
Platform& platform();

/// Called by the one place that chooses a backend, and by tests.
void setPlatform(Platform* chosen);

}  // namespace brindle
