#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QStyleHints>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "platform/qt/MenuStyle.h"
#include "views/PopupMenu.h"
#include "views/TabButton.h"
#include "views/TabsView.h"

namespace brindle {

namespace {

/// Points for one notch of a wheel, which counts as 120.
constexpr double notchLength = 60;
constexpr double notchAngle = 120;

constexpr int menuWidth = 116;

/// Whichever way it was turned: a plain mouse has only the vertical one.
double distanceOf(const QWheelEvent& event) {
    const bool isExact = !event.pixelDelta().isNull();
    const QPointF delta =
        isExact ? QPointF(event.pixelDelta()) : QPointF(event.angleDelta()) / notchAngle * notchLength;
    return std::abs(delta.x()) > std::abs(delta.y()) ? delta.x() : delta.y();
}

bool isMenuKey(const QKeyEvent& event) {
    return event.key() == Qt::Key_Menu || (event.key() == Qt::Key_F10 && event.modifiers() == Qt::ShiftModifier);
}

}  // namespace

void TabsView::wheelEvent(QWheelEvent* event) {
    scrollBy(-distanceOf(*event));
    event->accept();
}

bool TabsView::eventFilter(QObject* watched, QEvent* event) {
    auto& item = static_cast<QWidget&>(*watched);
    const auto found = std::ranges::find(tabs_, watched, &Tab::button);
    const auto tab = static_cast<std::size_t>(found - tabs_.begin());
    const bool isTab = found != tabs_.end();
    switch (event->type()) {
        case QEvent::MouseButtonPress:
            return (isTab && handlePress(tab, static_cast<QMouseEvent&>(*event))) ||
                   drag(item, static_cast<QMouseEvent&>(*event));
        case QEvent::MouseMove:
        case QEvent::MouseButtonRelease:
            return drag(item, static_cast<QMouseEvent&>(*event));
        case QEvent::KeyPress:
            return isTab && handleKey(tab, static_cast<QKeyEvent&>(*event));
        case QEvent::FocusIn:
            reveal(item);
            return false;
        case QEvent::Hide:
            drag_.reset();
            return false;
        default:
            return false;
    }
}

bool TabsView::drag(QWidget& item, const QMouseEvent& event) {
    const double x = event.globalPosition().x();
    if (event.type() == QEvent::MouseButtonPress) {
        drag_ = event.button() == Qt::LeftButton ? std::optional(Drag{x, offset_}) : std::nullopt;
        return false;
    }
    if (!drag_)
        return false;
    const bool isEnd = event.type() == QEvent::MouseButtonRelease;
    if (!drag_->isMoving && std::abs(x - drag_->pressedAt) > QGuiApplication::styleHints()->startDragDistance()) {
        drag_->isMoving = true;
        if (auto* button = qobject_cast<QAbstractButton*>(&item))
            button->setDown(false);
    }
    const bool wasMoving = drag_->isMoving;
    if (wasMoving)
        scrollBy(drag_->offset + drag_->pressedAt - x - offset_);
    if (isEnd)
        drag_.reset();
    return wasMoving;
}

bool TabsView::handlePress(std::size_t tab, const QMouseEvent& event) {
    if (event.button() != Qt::RightButton)
        return false;
    openMenu(tab, event.globalPosition().toPoint());
    return true;
}

bool TabsView::handleKey(std::size_t tab, QKeyEvent& event) {
    switch (event.key()) {
        case Qt::Key_Left:
            selectByKey(tab > 0 ? tab - 1 : 0);
            return true;
        case Qt::Key_Right:
            selectByKey(std::min(tab + 1, tabs_.size() - 1));
            return true;
        case Qt::Key_Home:
            selectByKey(0);
            return true;
        case Qt::Key_End:
            selectByKey(tabs_.size() - 1);
            return true;
        case Qt::Key_PageUp:
            selectByKey(pageAway(tab, -width()));
            return true;
        case Qt::Key_PageDown:
            selectByKey(pageAway(tab, width()));
            return true;
        default:
            break;
    }
    if (!isMenuKey(event))
        return false;
    const TabButton& button = *tabs_[tab].button;
    openMenu(tab, button.mapToGlobal(QPoint(0, button.height())));
    return true;
}

std::size_t TabsView::pageAway(std::size_t tab, int distance) const {
    const int target = tabs_[tab].button->x() + distance;
    const auto isBefore = [target](const Tab& each) { return each.button->geometry().right() < target; };
    const auto passed = static_cast<std::size_t>(std::ranges::count_if(tabs_, isBefore));
    return std::min(passed, tabs_.size() - 1);
}

void TabsView::selectByKey(std::size_t tab) {
    tabs_[tab].button->setFocus(Qt::TabFocusReason);
    bindings_.selectedTab = std::string(tabs_[tab].key);
}

void TabsView::addList() {
    bindings_.newListName = std::string();
    bindings_.showNewListAlert = true;
}

void TabsView::openMenu(std::size_t tab, QPoint globalPosition) {
    if (!tabs_[tab].list)
        return;
    const CustomList list = *tabs_[tab].list;
    QMenu* menu = newMenu(this, menuWidth);
    menu->addAction(QStringLiteral("Rename"), this, [this, list] {
        bindings_.listToRename = list;
        bindings_.renameListName = list.name;
        bindings_.showRenameListAlert = true;
    });
    QAction* remove = menu->addAction(QStringLiteral("Delete"), this, [this, list] {
        bindings_.listToDelete = list;
        bindings_.showDeleteListAlert = true;
    });
    markDestructive(*remove);
    TabButton* button = tabs_[tab].button;
    button->setMenuOpen(true);
    connect(menu, &QMenu::aboutToHide, button, [button] { button->setMenuOpen(false); });
    showMenu(*menu, scheme_, globalPosition);
}

}  // namespace brindle
