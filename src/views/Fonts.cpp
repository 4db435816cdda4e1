#include "views/Fonts.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QRectF>
#include <array>
#include <cmath>
#include <cstddef>
#include <optional>

#include "platform/qt/InterfaceFont.h"

namespace brindle {

namespace {

enum class Face { interface, monospaced };

struct Measure {
    int pixelSize;
    QFont::Weight weight;
    int lineHeight;
    Face face = Face::interface;
};

constexpr auto styleCount = static_cast<std::size_t>(TextStyle::count);

constexpr std::array<Measure, styleCount> measures = {{
    {13, QFont::Normal, 16},
    {13, QFont::Medium, 16},
    {13, QFont::DemiBold, 16},
    {11, QFont::Normal, 14},
    {17, QFont::Bold, 21},
    {10, QFont::Normal, 13},
    {10, QFont::Medium, 13},
    {12, QFont::Normal, 16},
    {12, QFont::Medium, 16},
    {14, QFont::Medium, 17},
    {47, QFont::Normal, 48},  // the emoji font's pictures are 109/128 of their pixel size: 40 points
    {13, QFont::Normal, 16, Face::monospaced},
}};

const Measure& measure(TextStyle style) {
    return measures[static_cast<std::size_t>(style)];
}

QFont makeFont(const Measure& wanted) {
    return wanted.face == Face::monospaced ? monospacedFont(wanted.pixelSize, wanted.weight)
                                           : interfaceFont(wanted.pixelSize, wanted.weight);
}

struct Typeface {
    QFont font;
    double baseline;
};

Typeface makeTypeface(const Measure& wanted) {
    const QFont made = makeFont(wanted);
    const QFontMetricsF metrics(made);
    // The half point above it: a whole pixel at twice the scale, and optically in the middle.
    const double exact = (wanted.lineHeight - metrics.ascent() - metrics.descent()) / 2 + metrics.ascent();
    return {made, std::ceil(exact * 2) / 2 - 0.5};
}

const Typeface& typeface(TextStyle style) {
    static std::array<std::optional<Typeface>, styleCount> made;
    auto& wanted = made[static_cast<std::size_t>(style)];
    if (!wanted)
        wanted = makeTypeface(measure(style));
    return *wanted;
}

}  // namespace

QFont textFont(TextStyle style) {
    return typeface(style).font;
}

int lineHeight(TextStyle style) {
    return measure(style).lineHeight;
}

double baseline(TextStyle style) {
    return typeface(style).baseline;
}

double textWidth(const QString& text, TextStyle style) {
    return QFontMetricsF(textFont(style)).horizontalAdvance(text);
}

void drawTextLine(QPainter& painter, const QRectF& place, const QString& text, TextStyle style,
                  Qt::Alignment alignment) {
    const QFontMetricsF metrics(textFont(style));
    QString shown = text;
    double width = metrics.horizontalAdvance(shown);
    if (width > place.width() + 0.5) {
        shown = metrics.elidedText(text, Qt::ElideRight, place.width());
        width = metrics.horizontalAdvance(shown);
    }
    double x = place.left();
    if (alignment & Qt::AlignHCenter)
        x += (place.width() - width) / 2;
    else if (alignment & Qt::AlignRight)
        x += place.width() - width;
    painter.setFont(textFont(style));
    painter.drawText(QPointF(x, place.top() + (place.height() - lineHeight(style)) / 2 + baseline(style)), shown);
}

}  // namespace brindle
