#pragma once

#include <QWidget>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "base/Published.h"
#include "model/CustomList.h"
#include "platform/ColorSchemes.h"
#include "views/SymbolButton.h"

namespace brindle {

class HistoryManager;
class TabButton;

/// The strip under the header: a tab for everything, one for what is pinned, one for each list, and a button that adds
/// a list. Wider than the popover it scrolls sideways, by wheel or drag.
class TabsView final : public QWidget {
    Q_OBJECT
public:
    /// State of the owner that the strip shows and changes.
    struct Bindings {
        Published<std::string>& selectedTab;
        Published<bool>& showNewListAlert;
        Published<std::string>& newListName;
        Published<bool>& showRenameListAlert;
        Published<std::string>& renameListName;
        Published<std::optional<CustomList>>& listToRename;
        Published<bool>& showDeleteListAlert;
        Published<std::optional<CustomList>>& listToDelete;
    };

    TabsView(const Bindings& bindings, HistoryManager& historyManager, QWidget* parent = nullptr);

    void setColorScheme(ColorScheme scheme);
    /// Shows what the lists, their counts and the selection are by now.
    void refresh();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    struct Tab {
        std::string key;  ///< what `selectedTab` is when it is selected
        std::optional<CustomList> list;
        TabButton* button;
    };
    struct Drag {
        double pressedAt;  ///< on the desktop, in points
        double offset;     ///< then
        bool isMoving = false;
    };

    void updateTabs();
    void showTabs();
    void orderTabs();
    [[nodiscard]] TabButton* makeButton(const std::string& key);
    [[nodiscard]] std::size_t keyboardTab() const;  ///< where Tab leads to: the selected one, if there is one

    void layOut();
    void scrollBy(double points);
    void reveal(const QWidget& item);

    /// Each answers whether the event is dealt with.
    [[nodiscard]] bool drag(QWidget& item, const QMouseEvent& event);
    [[nodiscard]] bool handlePress(std::size_t tab, const QMouseEvent& event);
    [[nodiscard]] bool handleKey(std::size_t tab, QKeyEvent& event);
    /// The tab that many points further, or the last one on the way there.
    [[nodiscard]] std::size_t pageAway(std::size_t tab, int distance) const;
    void selectByKey(std::size_t tab);
    void addList();
    void openMenu(std::size_t tab, QPoint globalPosition);

    Bindings bindings_;
    HistoryManager& historyManager_;
    ColorScheme scheme_ = ColorScheme::dark;
    std::vector<Tab> tabs_;
    SymbolButton addButton_;
    std::string shownTab_;
    double offset_ = 0;  ///< points that are scrolled out on the left
    double stripWidth_ = 0;
    std::optional<Drag> drag_;
};

}  // namespace brindle
