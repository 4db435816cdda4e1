#include "services/ClipboardMonitor.h"

#include "model/ClipboardItem.h"
#include "platform/MainQueue.h"
#include "platform/Pasteboard.h"
#include "platform/Platform.h"
#include "platform/Workspace.h"
#include "services/HistoryManager.h"

namespace brindle {

namespace {

std::optional<SharedText> frontmostBundleIdentifier() {
    const auto app = platform().workspace().frontmostApplication();
    return app ? std::optional<SharedText>(app->bundleIdentifier()) : std::nullopt;
}

}  // namespace

ClipboardMonitor::ClipboardMonitor(HistoryManager& historyManager)
    : pasteboard_(platform().pasteboard()), historyManager_(historyManager) {
    startMonitoring();
}

void ClipboardMonitor::startMonitoring() {
    timer_ = platform().mainQueue().repeat(pollInterval, [this] { checkClipboard(); });
}

void ClipboardMonitor::checkClipboard() {
    if (pasteboard_.changeCount() == lastChangeCount_.value())
        return;
    lastChangeCount_ = pasteboard_.changeCount();
    if (isInternalCopy_) {
        isInternalCopy_ = false;
        return;
    }
    auto sourceApp = frontmostBundleIdentifier();
    auto text = pasteboard_.string();
    if (!text)
        return;
    historyManager_.addItem({Uuid::generate(), std::move(*text), ItemType::text, platform().mainQueue().now(),
                             std::move(sourceApp), false, std::nullopt});
}

}  // namespace brindle
