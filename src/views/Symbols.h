#pragma once

#include <QPixmap>
#include <string_view>

class QColor;
class QPainter;
class QPointF;

namespace brindle {

/// A symbol of the bundle ("plus") in one colour, rendered for the device at `points` × `points`; empty when there is
/// no such symbol. Kept, since a view asks for the same few at every repaint.
QPixmap symbolPixmap(std::string_view name, int points, const QColor& color, double devicePixelRatio);

/// Draws it with its top left corner there.
void drawSymbol(QPainter& painter, QPointF topLeft, std::string_view name, int points, const QColor& color);

/// Pixels for a point where the painter paints, also when a widget is rendered into something else.
double devicePixelRatio(const QPainter& painter);

/// An image file (SVG or any that the toolkit reads), rendered for the device; empty when it cannot be read.
QPixmap imagePixmap(const QString& path, int points, double devicePixelRatio);

}  // namespace brindle
