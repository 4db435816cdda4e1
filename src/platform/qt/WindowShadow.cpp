#include "platform/qt/WindowShadow.h"

#include <QImage>
#include <QPainter>
#include <QPixmapCache>
#include <algorithm>

#include <qdrawutil.h>

#include "platform/qt/FramelessWindow.h"
#include "platform/qt/SoftShadow.h"

namespace brindle {

namespace {

constexpr QMargins margins = WindowShadow::margins;

/// One value a point; three times the wide layer's sigma inside the frame the shadow no longer changes.
constexpr int inside = FramelessWindow::cornerRadius + 48;
constexpr QRect place(margins.left(), margins.top(), 2 * inside + 1, 2 * inside + 1);
constexpr QSize patchSize = place.marginsAdded(margins).size();

struct Layer {
    int offset;       // points downwards
    double sigma;     // points
    double strength;  // opacity of the shadow of something endless
};

/// An opaque frame's shadow.
QImage shadowOf(const Layer& layer) {
    QPixmap shape(place.size());
    shape.fill(Qt::transparent);
    QPainter shapePainter(&shape);
    shapePainter.setRenderHint(QPainter::Antialiasing);
    shapePainter.setPen(Qt::NoPen);
    shapePainter.setBrush(Qt::black);
    shapePainter.drawRoundedRect(shape.rect(), FramelessWindow::cornerRadius, FramelessWindow::cornerRadius);
    shapePainter.end();
    QImage shadow(patchSize, QImage::Format_ARGB32_Premultiplied);
    shadow.fill(Qt::transparent);
    QPainter painter(&shadow);
    paintShadow(painter, QPointF(place.topLeft()), shape, {QPointF(0, layer.offset), layer.sigma, Qt::black});
    return shadow;
}

/// The layer's opacity at a point. The margins end where two sigmas do: without fading sooner the last of the shadow
/// would show as an edge.
double opacityAt(QPoint point, const QImage& shadow, const Layer& layer) {
    constexpr double atTwoSigmas = 0.0228;
    const double opacity = qAlpha(shadow.pixel(point)) / 255.0;
    return std::max(0.0, opacity - atTwoSigmas) / (1 - atTwoSigmas) * layer.strength;
}

QPixmap ninePatch(ColorScheme scheme) {
    const bool isDark = scheme == ColorScheme::dark;
    const Layer wide{10, 16, isDark ? 0.50 : 0.22};
    const Layer close{2, 3, isDark ? 0.30 : 0.14};
    const QImage wideShadow = shadowOf(wide);
    const QImage closeShadow = shadowOf(close);
    QColor color(isDark ? 0x020617 : 0x0F172A);
    QImage image(patchSize, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const double below = opacityAt({x, y}, wideShadow, wide);
            color.setAlphaF(static_cast<float>(below + opacityAt({x, y}, closeShadow, close) * (1 - below)));
            image.setPixelColor(x, y, color);
        }
    return QPixmap::fromImage(image);
}

}  // namespace

void WindowShadow::paint(QPainter& painter, QRect frame, ColorScheme scheme) {
    const QString key = scheme == ColorScheme::dark ? QStringLiteral("shadow-dark") : QStringLiteral("shadow-light");
    QPixmap patch;
    if (!QPixmapCache::find(key, &patch)) {
        patch = ninePatch(scheme);
        QPixmapCache::insert(key, patch);
    }
    const QMargins corners = margins + QMargins(inside, inside, inside, inside);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    qDrawBorderPixmap(&painter, frame.marginsAdded(margins), corners, patch);
}

}  // namespace brindle
