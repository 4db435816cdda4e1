#include <QDateTime>
#include <QLocale>
#include <QPainter>
#include <QTransform>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "views/AppIcon.h"
#include "views/FocusRing.h"
#include "views/Fonts.h"
#include "views/HistoryItemRow.h"
#include "views/Palette.h"
#include "views/RowText.h"
#include "views/Symbols.h"

namespace brindle {

namespace {

// Points, relative to the row.
constexpr int padding = 12;
constexpr int iconLeft = 16;
constexpr int textLeft = 48;
constexpr int textWidthAlone = 274;
constexpr int textWidthBesidePin = 251;
constexpr int pinLeft = 323;
constexpr int pinTop = 14;
constexpr int pinSize = 11;
constexpr int timeGap = 4;
constexpr int ringInset = 2;
constexpr int ringRadius = 6;

constexpr std::array backgrounds = {Role::surface, Role::rowHover, Role::rowPressed};

/// One point thick; at a broken scale always as many whole pixels, wherever the row lies.
void drawSeparator(QPainter& painter, const QRect& row, const QColor& color) {
    const QTransform& device = painter.deviceTransform();
    const double scale = device.m22();
    const double thickness = std::max(1.0, std::floor(scale)) / scale;
    const double rowEnd = device.map(QPointF(0, row.top() + row.height())).y();
    const double bottom = (std::round(rowEnd) - device.dy()) / scale;
    painter.fillRect(QRectF(row.left(), bottom - thickness, row.width(), thickness), color);
}

}  // namespace

int HistoryItemRow::height(int lineCount) {
    return padding + lineCount * lineHeight(TextStyle::entry) + timeGap + lineHeight(TextStyle::secondCaption) +
           padding;
}

int HistoryItemRow::textWidth(const ClipboardItem& item) {
    return item.isPinned ? textWidthBesidePin : textWidthAlone;
}

QString HistoryItemRow::timeText(Date date) {
    const QLocale locale = QLocale::system();
    QString format = locale.timeFormat(QLocale::ShortFormat);
    for (const auto seconds : {QLatin1String(":ss"), QLatin1String(".ss"), QLatin1String(":s"), QLatin1String(".s")})
        format.remove(seconds);
    return locale.toString(QDateTime::fromMSecsSinceEpoch(std::llround(date.unixTime() * 1000)).time(), format);
}

void HistoryItemRow::paint(QPainter& painter, const QRect& place, const RowAppearance& appearance) const {
    const ColorScheme scheme = appearance.scheme;
    painter.fillRect(place, color(backgrounds[static_cast<std::size_t>(appearance.look)], scheme));
    drawSeparator(painter, place, color(Role::separator, scheme));

    const QRect icon(place.left() + iconLeft, place.top() + padding, appIconSize, appIconSize);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(icon, appIcon(item_.sourceApp, scheme, devicePixelRatio(painter)));

    const RowText text(item_.content.view(), textWidth(item_));
    const QPoint textTop = place.topLeft() + QPoint(textLeft, padding);
    painter.setPen(color(Role::primaryText, scheme));
    text.draw(painter, textTop);

    painter.setPen(color(Role::secondaryText, scheme));
    const int timeTop = textTop.y() + text.lineCount() * lineHeight(TextStyle::entry) + timeGap;
    drawTextLine(painter, QRectF(textTop.x(), timeTop, textWidth(item_), lineHeight(TextStyle::secondCaption)),
                 timeText(item_.date), TextStyle::secondCaption);

    if (item_.isPinned)
        drawSymbol(painter, place.topLeft() + QPoint(pinLeft, pinTop), "pin.fill", pinSize, color(Role::pin, scheme));
    if (appearance.showsFocusRing)
        paintFocusRing(painter, QRectF(place).adjusted(ringInset, ringInset, -ringInset, -ringInset), ringRadius,
                       color(Role::focusRing, scheme));
}

}  // namespace brindle
