#pragma once

#include <QPointer>
#include <functional>

#include "platform/qt/QtPopoverContent.h"

namespace brindle {

class ClipboardMonitor;
class ContentView;
class HistoryManager;
class SettingsManager;

/// The main view as the content of a popover.
class ContentPopover final : public QtPopoverContent {
public:
    ContentPopover(HistoryManager& historyManager, ClipboardMonitor& clipboardMonitor,
                   SettingsManager& settingsManager);
    ~ContentPopover() override;

    [[nodiscard]] QWidget& widget() override;
    [[nodiscard]] ColorScheme colorScheme() const override;
    [[nodiscard]] Subscription onColorSchemeChange(std::function<void()> observer) override;

private:
    std::function<ContentView*()> makeView_;  // until there is one
    QPointer<ContentView> view_;              // a window that goes first takes it along
    Signal<> schemeChanges_;
    ColorScheme scheme_ = ColorScheme::dark;
};

}  // namespace brindle
