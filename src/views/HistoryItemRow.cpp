#include "views/HistoryItemRow.h"

#include <utility>

#include "base/Log.h"
#include "platform/Pasteboard.h"
#include "platform/Platform.h"
#include "services/AccessibilityPermissionHelper.h"
#include "services/ClipboardMonitor.h"
#include "services/FocusDelegate.h"
#include "services/HistoryManager.h"
#include "services/PasteService.h"

namespace brindle {

HistoryItemRow::HistoryItemRow(ClipboardItem item, HistoryManager& historyManager, ClipboardMonitor& clipboardMonitor,
                               Published<bool>& isSearchFocused, Published<bool>& showAccessibilityDialog)
    : item_(std::move(item)),
      historyManager_(historyManager),
      clipboardMonitor_(clipboardMonitor),
      isSearchFocused_(isSearchFocused),
      showAccessibilityDialog_(showAccessibilityDialog) {}

void HistoryItemRow::pasteItem() const {
    log("Click detected!");
    if (!AccessibilityPermissionHelper::checkAccessibilityPermission()) {
        log("No accessibility permission - showing dialog");
        showAccessibilityDialog_ = true;
        return;
    }
    log("Has accessibility permission - pasting");
    isSearchFocused_ = false;
    closePopover();
    writeToPasteboard();
    PasteService::paste();
}

void HistoryItemRow::copyItem() const {
    writeToPasteboard();
    closePopover();
}

void HistoryItemRow::deleteItem() const {
    historyManager_.deleteItem(item_);
    closePopover();
}

void HistoryItemRow::togglePin() const {
    historyManager_.togglePin(item_);
    closePopover();
}

void HistoryItemRow::moveItem(const Uuid& listId) const {
    historyManager_.moveItem(item_, listId);
    closePopover();
}

void HistoryItemRow::writeToPasteboard() const {
    clipboardMonitor_.setIsInternalCopy(true);
    platform().pasteboard().clearContents();
    platform().pasteboard().setString(item_.content);
}

void HistoryItemRow::closePopover() const {
    if (FocusDelegate* delegate = focusDelegate())
        delegate->closePopover();
}

}  // namespace brindle
