#pragma once

#include "views/ListDialogs.h"
#include "views/SettingsOverlay.h"
#include "views/Sheet.h"

namespace brindle {

class HistoryManager;
class SettingsManager;
struct ContentState;

/// What lies over the popover's parts while a flag of its state says so: the settings over the content area, the list
/// dialogs over everything, and the sheets in windows of their own.
class Presentations {
public:
    /// `contentPlace` is the content area in `popover`. Everything outlives this object.
    Presentations(ContentState& state, HistoryManager& historyManager, SettingsManager& settingsManager,
                  QWidget& popover, const QRect& contentPlace);
    Presentations(const Presentations&) = delete;
    Presentations& operator=(const Presentations&) = delete;

    /// Opens and closes all of it as the flags are by now.
    void refresh(ColorScheme scheme);

private:
    ContentState& state_;
    SettingsOverlay settings_;
    SettingsOverlay::Motion settingsMotion_ = SettingsOverlay::Motion::none;
    ListDialogs dialogs_;
    Sheet about_;
    Sheet accessibilityDialog_;
    Subscription settingsObserver_;
};

}  // namespace brindle
