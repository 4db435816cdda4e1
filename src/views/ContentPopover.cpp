#include "views/ContentPopover.h"

#include <utility>

#include "views/ContentView.h"

namespace brindle {

ContentPopover::ContentPopover(HistoryManager& historyManager, ClipboardMonitor& clipboardMonitor,
                               SettingsManager& settingsManager)
    : makeView_([&historyManager, &clipboardMonitor, &settingsManager] {
          return new ContentView(historyManager, clipboardMonitor, settingsManager);
      }) {}

ContentPopover::~ContentPopover() {
    delete view_;
}

QWidget& ContentPopover::widget() {
    if (makeView_) {
        view_ = std::exchange(makeView_, nullptr)();
        scheme_ = view_->effectiveScheme();
        QObject::connect(view_, &ContentView::rebuilt, view_, [this] {
            const ColorScheme before = std::exchange(scheme_, view_->effectiveScheme());
            if (before != scheme_)
                schemeChanges_.emit();
        });
    }
    return *view_;
}

ColorScheme ContentPopover::colorScheme() const {
    return scheme_;
}

Subscription ContentPopover::onColorSchemeChange(std::function<void()> observer) {
    return schemeChanges_.subscribe(std::move(observer));
}

}  // namespace brindle
