#include "views/OverlayScrollBar.h"

#include <QPainter>
#include <QPointer>
#include <QScrollBar>
#include <algorithm>
#include <cmath>

#include "platform/MainQueue.h"
#include "platform/Platform.h"
#include "views/FocusRing.h"
#include "views/Palette.h"

namespace brindle {

namespace {

// Points.
constexpr double thumbWidth = 6;
constexpr double rightEdge = 3;
constexpr double radius = 3;
constexpr double endInset = 4;
constexpr double shortestThumb = 24;
constexpr int hoverWidth = 12;

constexpr double lingeringTime = 0.8;  ///< seconds

}  // namespace

OverlayScrollBar::OverlayScrollBar(QScrollBar& model, QWidget& viewport) : model_(model), viewport_(viewport) {
    connect(&model, &QScrollBar::valueChanged, this, &OverlayScrollBar::linger);
}

QRectF OverlayScrollBar::thumb() const {
    const double range = model_.maximum();
    if (range <= 0)
        return {};
    const double visible = viewport_.height();
    const double track = visible - 2 * endInset;
    const double length = std::max(shortestThumb, track * visible / (visible + range));
    const double top = endInset + (track - length) * model_.value() / range;
    return {viewport_.width() - rightEdge - thumbWidth, top, thumbWidth, length};
}

bool OverlayScrollBar::isShown() const {
    return isDragged() || isHovered_ || lingering_ > 0;
}

void OverlayScrollBar::paint(QPainter& painter, ColorScheme scheme) const {
    const QRectF place = thumb();
    if (!isShown() || place.isEmpty())
        return;
    const Role role = isDragged() || isHovered_ ? Role::scrollThumbHover : Role::scrollThumb;
    fillRounded(painter, place, radius, color(role, scheme));
}

bool OverlayScrollBar::isOverThumb(QPoint position) const {
    const QRectF place = thumb();
    return isShown() && !place.isEmpty() && position.x() >= viewport_.width() - hoverWidth &&
           position.y() >= place.top() && position.y() < place.bottom();
}

bool OverlayScrollBar::press(QPoint position) {
    if (!isOverThumb(position))
        return false;
    grabOffset_ = position.y() - thumb().top();
    viewport_.update();
    return true;
}

void OverlayScrollBar::release() {
    grabOffset_.reset();
    viewport_.update();
}

void OverlayScrollBar::pointerMoved(QPoint position) {
    setHovered(position.x() >= viewport_.width() - hoverWidth);
    if (!grabOffset_)
        return;
    const double room = viewport_.height() - 2 * endInset - thumb().height();
    if (room > 0)
        model_.setValue(
            static_cast<int>(std::lround((position.y() - *grabOffset_ - endInset) / room * model_.maximum())));
}

void OverlayScrollBar::pointerLeft() {
    setHovered(false);
}

void OverlayScrollBar::setHovered(bool isHovered) {
    if (isHovered_ == isHovered)
        return;
    isHovered_ = isHovered;
    viewport_.update();
}

void OverlayScrollBar::linger() {
    ++lingering_;
    platform().mainQueue().after(lingeringTime, [self = QPointer(this)] {
        if (self && --self->lingering_ == 0)
            self->viewport_.update();
    });
}

}  // namespace brindle
