#include "views/Symbols.h"

#include <QIcon>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>
#include <cmath>
#include <optional>
#include <string>

#include "platform/Bundle.h"
#include "platform/Platform.h"
#include "platform/qt/QtText.h"

namespace brindle {

namespace {

QPixmap clearPixmap(int points, double ratio) {
    const int side = static_cast<int>(std::lround(points * ratio));
    QPixmap pixmap(side, side);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    return pixmap;
}

QPixmap renderSvg(const QString& path, int points, double ratio) {
    QSvgRenderer drawing(path);
    if (!drawing.isValid())
        return {};
    QPixmap pixmap = clearPixmap(points, ratio);
    QPainter painter(&pixmap);
    drawing.render(&painter, QRectF(0, 0, points, points));
    return pixmap;
}

void tint(QPixmap& pixmap, const QColor& color) {
    QPainter painter(&pixmap);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(QRectF(QPointF(), pixmap.deviceIndependentSize()), color);
}

}  // namespace

QPixmap symbolPixmap(std::string_view name, int points, const QColor& color, double devicePixelRatio) {
    const std::optional<std::string> path = platform().bundle().symbolNamed(name);
    if (!path)
        return {};
    const QString key = QStringLiteral("brindle %1 %2 %3 %4")
                            .arg(toQString(*path), QString::number(points), color.name(QColor::HexArgb),
                                 QString::number(devicePixelRatio));
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap))
        return pixmap;
    pixmap = renderSvg(toQString(*path), points, devicePixelRatio);
    if (!pixmap.isNull())
        tint(pixmap, color);
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}

void drawSymbol(QPainter& painter, QPointF topLeft, std::string_view name, int points, const QColor& color) {
    painter.drawPixmap(topLeft, symbolPixmap(name, points, color, devicePixelRatio(painter)));
}

double devicePixelRatio(const QPainter& painter) {
    return painter.deviceTransform().m11();
}

QPixmap imagePixmap(const QString& path, int points, double devicePixelRatio) {
    if (path.endsWith(".svg"))
        return renderSvg(path, points, devicePixelRatio);
    const QPixmap found = QIcon(path).pixmap(QSize(points, points), devicePixelRatio);
    if (found.isNull())
        return {};
    // An icon of the toolkit's is never larger than its picture.
    QPixmap pixmap = clearPixmap(points, devicePixelRatio);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const QSizeF size = found.deviceIndependentSize().scaled(points, points, Qt::KeepAspectRatio);
    painter.drawPixmap(QRectF(QPointF(points - size.width(), points - size.height()) / 2, size), found, found.rect());
    return pixmap;
}

}  // namespace brindle
