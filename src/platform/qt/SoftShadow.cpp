#include "platform/qt/SoftShadow.h"

#include <QImage>
#include <QPainter>
#include <QPixmapCache>
#include <QRectF>
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numbers>
#include <vector>

namespace brindle {

int SoftShadow::reach() const {
    return static_cast<int>(std::ceil(3 * sigma));
}

namespace {

/// One value after the other becomes the mean of the `width` values around it; outside there is nothing.
void blurLine(std::uint8_t* line, int length, std::ptrdiff_t step, int width, std::vector<std::uint8_t>& copy) {
    for (int i = 0; i < length; ++i)
        copy[static_cast<std::size_t>(i)] = line[i * step];
    const auto at = [&](int i) { return i >= 0 && i < length ? copy[static_cast<std::size_t>(i)] : 0; };
    const int before = width / 2;
    int sum = 0;
    for (int i = -before; i < width - before; ++i)
        sum += at(i);
    for (int i = 0; i < length; ++i) {
        line[i * step] = static_cast<std::uint8_t>((sum + width / 2) / width);
        sum += at(i + width - before) - at(i - before);
    }
}

/// Three means in a row come close to a Gaussian.
void blur(QImage& alpha, double sigma) {
    const int width = std::max(1, static_cast<int>(std::lround(sigma * 3 * std::sqrt(2 * std::numbers::pi) / 4))) | 1;
    std::vector<std::uint8_t> copy(static_cast<std::size_t>(std::max(alpha.width(), alpha.height())));
    for (int pass = 0; pass < 3; ++pass) {
        for (int y = 0; y < alpha.height(); ++y)
            blurLine(alpha.scanLine(y), alpha.width(), 1, width, copy);
        for (int x = 0; x < alpha.width(); ++x)
            blurLine(alpha.bits() + x, alpha.height(), alpha.bytesPerLine(), width, copy);
    }
}

/// The shadow of what `draw` draws in a rectangle of that size, with room around it.
template <typename Draw>
QPixmap makeShadow(QSizeF size, double ratio, const SoftShadow& shadow, Draw draw) {
    const int reach = shadow.reach();
    const QSizeF whole = (size + QSizeF(2 * reach, 2 * reach)) * ratio;
    QImage shape(QSize(static_cast<int>(std::ceil(whole.width())), static_cast<int>(std::ceil(whole.height()))),
                 QImage::Format_ARGB32_Premultiplied);
    shape.setDevicePixelRatio(ratio);
    shape.fill(Qt::transparent);
    QPainter shapePainter(&shape);
    shapePainter.setRenderHint(QPainter::Antialiasing);
    shapePainter.translate(reach, reach);
    draw(shapePainter);
    shapePainter.end();
    QImage alpha = shape.convertToFormat(QImage::Format_Alpha8);
    blur(alpha, shadow.sigma * ratio);
    QPainter tint(&shape);
    tint.setCompositionMode(QPainter::CompositionMode_Source);
    tint.drawImage(QPointF(), alpha);
    tint.setCompositionMode(QPainter::CompositionMode_SourceIn);
    tint.fillRect(QRectF(QPointF(), shape.deviceIndependentSize()), shadow.color);
    tint.end();
    return QPixmap::fromImage(shape);
}

void paintAround(QPainter& painter, QPointF topLeft, const QPixmap& made, const SoftShadow& shadow) {
    const int reach = shadow.reach();
    painter.drawPixmap(topLeft + shadow.offset - QPointF(reach, reach), made);
}

}  // namespace

void paintShadow(QPainter& painter, const QRectF& place, double radius, const SoftShadow& shadow) {
    const double ratio = painter.deviceTransform().m11();
    const QString key = QStringLiteral("shadow %1 %2 %3 %4 %5 %6")
                            .arg(place.width())
                            .arg(place.height())
                            .arg(radius)
                            .arg(shadow.sigma)
                            .arg(shadow.color.name(QColor::HexArgb))
                            .arg(ratio);
    QPixmap made;
    if (!QPixmapCache::find(key, &made)) {
        made = makeShadow(place.size(), ratio, shadow, [&](QPainter& shape) {
            shape.setPen(Qt::NoPen);
            shape.setBrush(Qt::black);
            shape.drawRoundedRect(QRectF(QPointF(), place.size()), radius, radius);
        });
        QPixmapCache::insert(key, made);
    }
    paintAround(painter, place.topLeft(), made, shadow);
}

void paintShadow(QPainter& painter, QPointF topLeft, const QPixmap& picture, const SoftShadow& shadow) {
    const auto draw = [&](QPainter& shape) { shape.drawPixmap(QPointF(), picture); };
    paintAround(painter, topLeft,
                makeShadow(picture.deviceIndependentSize(), picture.devicePixelRatioF(), shadow, draw), shadow);
}

}  // namespace brindle
