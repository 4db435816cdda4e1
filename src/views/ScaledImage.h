#pragma once

#include <QImage>

class QPainter;
class QRect;

namespace brindle {

/// Draws it stretched to the rectangle, smoothly also where that is many times smaller.
void drawScaled(QPainter& painter, const QRect& place, const QImage& image);

}  // namespace brindle
