#include "views/FocusRing.h"

#include <QPainter>
#include <QRectF>
#include <algorithm>

namespace brindle {

void paintFocusRing(QPainter& painter, const QRectF& place, double radius, const QColor& color) {
    strokeRounded(painter, place, radius, 2, color);
}

void fillRounded(QPainter& painter, const QRectF& place, double radius, const QColor& color) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(place, radius, radius);
}

void strokeRounded(QPainter& painter, const QRectF& place, double radius, double width, const QColor& color) {
    const double half = width / 2;
    const double middle = std::max(0.0, radius - half);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, width));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(place.adjusted(half, half, -half, -half), middle, middle);
}

}  // namespace brindle
