#pragma once

#include <QString>

#include "base/Published.h"
#include "model/ClipboardItem.h"
#include "platform/ColorSchemes.h"

class QMenu;
class QPainter;
class QRect;
class QWidget;

namespace brindle {

class ClipboardMonitor;
class HistoryManager;

/// What an entry's row is drawn with beside the entry.
struct RowAppearance {
    enum class Look { rest, hover, pressed };
    ColorScheme scheme = ColorScheme::dark;
    Look look = Look::rest;
    bool showsFocusRing = false;
};

/// One entry in the list: how it looks and what it does. It is made when it is needed and has no widget; the entry is
/// the one that was current when the list was drawn, and the history finds it again by its id.
class HistoryItemRow {
public:
    HistoryItemRow(ClipboardItem item, HistoryManager& historyManager, ClipboardMonitor& clipboardMonitor,
                   Published<bool>& isSearchFocused, Published<bool>& showAccessibilityDialog);

    [[nodiscard]] const ClipboardItem& item() const { return item_; }

    void paint(QPainter& painter, const QRect& place, const RowAppearance& appearance) const;

    /// A click: pastes the entry into the application that was in front, if this program is trusted to.
    void pasteItem() const;
    void copyItem() const;
    void deleteItem() const;
    void togglePin() const;
    void moveItem(const Uuid& listId) const;

    /// The context menu, not yet shown; it deletes itself when it closes.
    [[nodiscard]] QMenu* makeMenu(QWidget* parent) const;

    /// The height of a row with that many lines of text, and the width that the text has.
    static int height(int lineCount);
    static int textWidth(const ClipboardItem& item);
    /// Hours and minutes the way the user's locale writes them.
    static QString timeText(Date date);

private:
    void writeToPasteboard() const;
    void closePopover() const;

    ClipboardItem item_;
    HistoryManager& historyManager_;
    ClipboardMonitor& clipboardMonitor_;
    Published<bool>& isSearchFocused_;
    Published<bool>& showAccessibilityDialog_;
};

}  // namespace brindle
