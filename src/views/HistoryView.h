#pragma once

#include <QAbstractScrollArea>
#include <optional>
#include <vector>

#include "base/Published.h"
#include "platform/ColorSchemes.h"
#include "views/FilteredItems.h"
#include "views/FocusRing.h"
#include "views/HistoryFilter.h"
#include "views/HistoryItemRow.h"
#include "views/OverlayScrollBar.h"
#include "views/RowHeights.h"

namespace brindle {

class ClipboardMonitor;
class HistoryManager;

/// The list of entries. It paints the rows that are seen and has no widget for any of them.
class HistoryView final : public QAbstractScrollArea {
    Q_OBJECT
public:
    HistoryView(HistoryManager& historyManager, ClipboardMonitor& clipboardMonitor,
                const Published<std::string>& searchText, HistoryFilter filter, Published<bool>& isSearchFocused,
                Published<bool>& showAccessibilityDialog, QWidget* parent = nullptr);

    void setFilter(HistoryFilter filter) { filter_ = filter; }
    void setColorScheme(ColorScheme scheme);
    /// Shows what the history, the filter and the search text are by now.
    void refresh();

    /// What is shown, as of the last refresh.
    [[nodiscard]] const std::vector<ClipboardItem>& filteredItems() const { return filtered_.items(); }
    [[nodiscard]] HistoryItemRow row(std::size_t index) const;
    [[nodiscard]] QRect rowRect(std::size_t index) const;  ///< in the viewport
    [[nodiscard]] std::optional<std::size_t> rowAt(QPoint viewportPosition) const;
    [[nodiscard]] std::optional<std::size_t> focusedRow() const;

protected:
    bool viewportEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    /// Quick clicks are single ones; a scroll area of the toolkit would drop every second. Not so the second of two of
    /// which the first was for something that stood here before.
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    [[nodiscard]] RowAppearance appearance(std::size_t index) const;
    [[nodiscard]] std::optional<Uuid> idAt(std::optional<QPoint> viewportPosition) const;
    void updateScrollRange();

    /// The row to go to from the focused one; none when the key moves nothing.
    [[nodiscard]] std::optional<std::size_t> destination(int key) const;
    void focusRow(std::size_t index);
    void scrollTo(std::size_t index);
    void openMenu(std::size_t index, QPoint globalPosition);
    void openMenuOfFocusedRow();

    HistoryManager& historyManager_;
    ClipboardMonitor& clipboardMonitor_;
    const Published<std::string>& searchText_;
    HistoryFilter filter_;
    Published<bool>& isSearchFocused_;
    Published<bool>& showAccessibilityDialog_;
    ColorScheme scheme_ = ColorScheme::dark;

    FilteredItems filtered_;
    RowHeights heights_;
    HistoryFilter shownFilter_;
    std::string shownSearchText_;
    OverlayScrollBar scrollBar_;
    FocusRing ring_;
    double wheelRest_ = 0;  ///< what is left of the last wheel step below a point

    // Rows are remembered by their entries: the list may change under the pointer.
    std::optional<QPoint> pointer_;
    std::optional<quint64> pressTime_;  ///< of the last press here, by the events' clock, in milliseconds
    std::optional<Uuid> pressedId_;
    std::optional<Uuid> focusedId_;
    std::optional<Uuid> menuId_;
    Subscription historyObserver_;
};

}  // namespace brindle
