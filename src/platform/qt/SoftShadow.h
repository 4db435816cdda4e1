#pragma once

#include <QColor>
#include <QPixmap>
#include <QPointF>

class QPainter;
class QRectF;

namespace brindle {

struct SoftShadow {
    QPointF offset;    ///< points
    double sigma = 0;  ///< points; half of what a style sheet calls its blur
    QColor color;

    [[nodiscard]] int reach() const;  ///< points beyond what casts it, before the offset
};

/// Paints the shadow of a filled rectangle with round corners, also where the rectangle will lie.
void paintShadow(QPainter& painter, const QRectF& place, double radius, const SoftShadow& shadow);

/// Paints the shadow of a picture whose top left corner is there.
void paintShadow(QPainter& painter, QPointF topLeft, const QPixmap& picture, const SoftShadow& shadow);

}  // namespace brindle
