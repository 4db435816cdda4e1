#include "views/Presentations.h"

#include <utility>

#include "views/AboutView.h"
#include "views/AccessibilityPermissionDialog.h"
#include "views/Animation.h"
#include "views/ContentState.h"

namespace brindle {

namespace {

template <typename View>
SheetView* make(std::function<void()> dismiss) {
    return new View(std::move(dismiss));
}

}  // namespace

Presentations::Presentations(ContentState& state, HistoryManager& historyManager, SettingsManager& settingsManager,
                             QWidget& popover, const QRect& contentPlace)
    : state_(state),
      settings_(settingsManager, state.showSettings, &popover),
      dialogs_(state, historyManager, popover),
      about_(state.showAbout, make<AboutView>, popover),
      accessibilityDialog_(state.showAccessibilityDialog, make<AccessibilityPermissionDialog>, popover) {
    settings_.setGeometry(contentPlace);
    settingsObserver_ = state.showSettings.subscribe([this](bool) {
        settingsMotion_ = isAnimatedChange() ? SettingsOverlay::Motion::slide : SettingsOverlay::Motion::none;
    });
}

void Presentations::refresh(ColorScheme scheme) {
    settings_.setColorScheme(scheme);
    settings_.refresh();
    settings_.setPresented(state_.showSettings.value(), settingsMotion_);
    dialogs_.refresh(scheme);
    about_.refresh(scheme);
    accessibilityDialog_.refresh(scheme);
}

}  // namespace brindle
