#include <QAccessible>
#include <QFocusEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPointer>
#include <QScrollBar>
#include <QStyleHints>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "platform/MainQueue.h"
#include "platform/Platform.h"
#include "views/HistoryAccessible.h"
#include "views/HistoryView.h"
#include "views/PopupMenu.h"

namespace brindle {

namespace {

/// Points for one notch of a wheel, which counts as 120.
constexpr double notchLength = 60;
constexpr double notchAngle = 120;

}  // namespace

void HistoryView::mousePressEvent(QMouseEvent* event) {
    const QPoint position = event->position().toPoint();
    pointer_ = position;
    pressTime_ = event->timestamp();
    ring_.clicked();
    if (event->button() == Qt::LeftButton) {
        if (!scrollBar_.press(position))
            pressedId_ = idAt(position);
    } else if (event->button() == Qt::RightButton) {
        if (const auto index = rowAt(position))
            openMenu(*index, event->globalPosition().toPoint());
    }
    viewport()->update();
}

void HistoryView::mouseDoubleClickEvent(QMouseEvent* event) {
    const auto interval = static_cast<quint64>(QGuiApplication::styleHints()->mouseDoubleClickInterval());
    if (pressTime_ && event->timestamp() - *pressTime_ <= interval)
        mousePressEvent(event);
}

void HistoryView::mouseMoveEvent(QMouseEvent* event) {
    pointer_ = event->position().toPoint();
    scrollBar_.pointerMoved(*pointer_);
    viewport()->update();
}

void HistoryView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    scrollBar_.release();
    pointer_ = event->position().toPoint();
    const auto pressed = std::exchange(pressedId_, std::nullopt);
    viewport()->update();
    const auto index = rowAt(*pointer_);
    if (pressed && index && filteredItems()[*index].id == *pressed)
        row(*index).pasteItem();
}

/// The release and the leaving of a mouse that was at work here go elsewhere.
void HistoryView::hideEvent(QHideEvent* event) {
    QAbstractScrollArea::hideEvent(event);
    pressedId_.reset();
    pointer_.reset();
    scrollBar_.release();
    scrollBar_.pointerLeft();
}

void HistoryView::wheelEvent(QWheelEvent* event) {
    double distance = event->pixelDelta().y();
    if (distance == 0)
        distance = event->angleDelta().y() / notchAngle * notchLength;
    const double exact = wheelRest_ - distance;
    const double whole = std::trunc(exact);
    wheelRest_ = exact - whole;
    verticalScrollBar()->setValue(verticalScrollBar()->value() + static_cast<int>(whole));
    pointer_ = event->position().toPoint();
    event->accept();
}

std::optional<std::size_t> HistoryView::focusedRow() const {
    if (!focusedId_)
        return std::nullopt;
    const auto& items = filteredItems();
    const auto found = std::find_if(items.begin(), items.end(), [this](const auto& i) { return i.id == *focusedId_; });
    return found == items.end() ? std::nullopt : std::optional<std::size_t>(found - items.begin());
}

std::optional<std::size_t> HistoryView::destination(int key) const {
    const std::size_t count = filteredItems().size();
    if (count == 0)
        return std::nullopt;
    const auto current = focusedRow();
    const auto pageAway = [&](int distance) {
        const int middle = heights_.top(current.value_or(0)) + heights_.height(current.value_or(0)) / 2;
        return heights_.rowAt(std::clamp(middle + distance, 0, heights_.total() - 1));
    };
    switch (key) {
        case Qt::Key_Down:
            return current ? std::min(*current + 1, count - 1) : 0;
        case Qt::Key_Up:
            return current && *current > 0 ? *current - 1 : 0;
        case Qt::Key_Home:
            return 0;
        case Qt::Key_End:
            return count - 1;
        case Qt::Key_PageDown:
            return pageAway(viewport()->height());
        case Qt::Key_PageUp:
            return pageAway(-viewport()->height());
        default:
            return std::nullopt;
    }
}

void HistoryView::keyPressEvent(QKeyEvent* event) {
    const bool wantsMenu =
        event->key() == Qt::Key_Menu || (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier);
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (const auto target = destination(event->key())) {
        focusRow(*target);
    } else if (wantsMenu) {
        openMenuOfFocusedRow();
    } else if (const auto current = focusedRow(); isReturn && current) {
        if (!event->isAutoRepeat())
            row(*current).pasteItem();
    } else {
        event->ignore();
    }
}

void HistoryView::focusInEvent(QFocusEvent* event) {
    ring_.gained(event->reason());
    if (!focusedRow() && !filteredItems().empty())
        focusedId_ = idAt(QPoint(0, 0));
    const bool isByKey = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
    if (const auto current = focusedRow(); current && isByKey)
        scrollTo(*current);
    // After the toolkit's own word that the list has the keyboard.
    platform().mainQueue().post([self = QPointer(this)] {
        const auto current = self && self->hasFocus() ? self->focusedRow() : std::nullopt;
        if (current)
            announceRowFocused(*self, *current);
    });
    viewport()->update();
}

void HistoryView::focusOutEvent(QFocusEvent*) {
    viewport()->update();
}

void HistoryView::focusRow(std::size_t index) {
    ring_.reachedByKey();
    focusedId_ = filteredItems()[index].id;
    scrollTo(index);
    viewport()->update();
    announceRowFocused(*this, index);
}

void HistoryView::scrollTo(std::size_t index) {
    QScrollBar& bar = *verticalScrollBar();
    const int top = heights_.top(index);
    const int bottom = top + heights_.height(index);
    bar.setValue(std::clamp(bar.value(), bottom - viewport()->height(), top));
}

void HistoryView::openMenuOfFocusedRow() {
    const auto index = focusedRow();
    if (!index || menuId_)
        return;
    scrollTo(*index);
    openMenu(*index, viewport()->mapToGlobal(rowRect(*index).center()));
}

void HistoryView::openMenu(std::size_t index, QPoint globalPosition) {
    // The menu gets the release of a button that is down.
    pressedId_.reset();
    scrollBar_.release();
    menuId_ = filteredItems()[index].id;
    QMenu* menu = row(index).makeMenu(this);
    connect(menu, &QMenu::aboutToHide, this, [this] {
        menuId_.reset();
        pointer_.reset();
        viewport()->update();
    });
    showMenu(*menu, scheme_, globalPosition);
}

}  // namespace brindle
