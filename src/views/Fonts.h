#pragma once

#include <QFont>
#include <QString>

class QPainter;
class QRectF;

namespace brindle {

/// The kinds of text. Each has a pixel size and a line height of its own, so that another font of the desktop does not
/// move the layout.
enum class TextStyle {
    body,
    bodyMedium,
    headline,
    subheadline,
    title2,
    caption,
    secondCaption,
    small,  ///< segments and messages
    smallMedium,
    link,
    hand,   ///< the guide's pointing hand
    entry,  ///< monospaced
    count
};

/// The desktop's font, or the one that Brindle was drawn with where the desktop names none. Unhinted, so that lines
/// break alike at every scale.
QFont textFont(TextStyle style);
int lineHeight(TextStyle style);
/// From the top of a line of that style to where its letters stand.
double baseline(TextStyle style);
double textWidth(const QString& text, TextStyle style);

/// One line of text with the painter's pen, in the middle of the rectangle's height. What is too wide ends in an
/// ellipsis.
void drawTextLine(QPainter& painter, const QRectF& place, const QString& text, TextStyle style,
                  Qt::Alignment alignment = Qt::AlignLeft);

}  // namespace brindle
