#pragma once

#include "services/ClipboardMonitor.h"
#include "services/HistoryManager.h"
#include "services/SettingsManager.h"
#include "support/SimulatedPlatform.h"

namespace brindle::test {

/// Gives the desktop the program's symbols and the icons of the applications "term", "mail", "code", "web", "chat" and
/// "note".
void installDemoImages(SimulatedPlatform& sim);

/// A history of one morning, the same at every run.
class DemoHistory {
public:
    DemoHistory();

    SimulatedPlatform sim;
    SettingsManager settings;
    HistoryManager history{settings};
    ClipboardMonitor monitor{history};
};

}  // namespace brindle::test
