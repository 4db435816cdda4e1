#include "platform/qt/WindowShadow.h"

#include <QImage>
#include <QPainter>
#include <QPixmapCache>
#include <algorithm>
#include <cmath>
#include <vector>

#include <qdrawutil.h>

#include "platform/qt/FramelessWindow.h"

namespace brindle {

namespace {

constexpr QMargins margins = WindowShadow::margins;

struct Layer {
    int offset;       // points downwards
    double sigma;     // points
    double strength;  // opacity of the shadow of something endless
};

/// One value a point; three times the wide layer's sigma inside the frame the shadow no longer changes.
constexpr int inside = FramelessWindow::cornerRadius + 48;
constexpr int frameSide = 2 * inside + 1;
constexpr int width = margins.left() + frameSide + margins.right();
constexpr int height = margins.top() + frameSide + margins.bottom();
using Grid = std::vector<float>;

std::vector<float> gaussian(double sigma) {
    const int reach = static_cast<int>(std::ceil(3 * sigma));
    std::vector<float> kernel(static_cast<std::size_t>(2 * reach + 1));
    float sum = 0;
    for (int i = -reach; i <= reach; ++i)
        sum += kernel[static_cast<std::size_t>(i + reach)] = static_cast<float>(std::exp(-i * i / (2 * sigma * sigma)));
    for (float& weight : kernel)
        weight /= sum;
    return kernel;
}

/// Blurs along rows and swaps rows and columns, so that two calls blur both ways.
Grid blurredTransposed(const Grid& grid, int columns, int rows, const std::vector<float>& kernel) {
    const int reach = static_cast<int>(kernel.size() / 2);
    Grid result(grid.size());
    for (int y = 0; y < rows; ++y)
        for (int x = 0; x < columns; ++x) {
            float sum = 0;
            for (int i = std::max(-reach, -x); i <= std::min(reach, columns - 1 - x); ++i)
                sum +=
                    kernel[static_cast<std::size_t>(i + reach)] * grid[static_cast<std::size_t>(y * columns + x + i)];
            result[static_cast<std::size_t>(x * rows + y)] = sum;
        }
    return result;
}

Grid frameShape(int offset) {
    QImage image(width, height, QImage::Format_Grayscale8);
    image.fill(Qt::black);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white);
    painter.drawRoundedRect(margins.left(), margins.top() + offset, frameSide, frameSide, FramelessWindow::cornerRadius,
                            FramelessWindow::cornerRadius);
    painter.end();
    Grid grid;
    grid.reserve(static_cast<std::size_t>(width * height));
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            grid.push_back(static_cast<float>(image.constScanLine(y)[x]) / 255.0F);
    return grid;
}

Grid shadowOf(Layer layer) {
    const auto kernel = gaussian(layer.sigma);
    Grid grid =
        blurredTransposed(blurredTransposed(frameShape(layer.offset), width, height, kernel), height, width, kernel);
    // The margins end where two sigmas do: without this the last of the shadow would show as an edge.
    constexpr float atTwoSigmas = 0.0228F;
    for (float& value : grid)
        value = std::max(0.0F, value - atTwoSigmas) / (1 - atTwoSigmas) * static_cast<float>(layer.strength);
    return grid;
}

QPixmap ninePatch(ColorScheme scheme) {
    const bool isDark = scheme == ColorScheme::dark;
    const Grid wide = shadowOf({10, 16, isDark ? 0.50 : 0.22});
    const Grid close = shadowOf({2, 3, isDark ? 0.30 : 0.14});
    const QColor color(isDark ? 0x020617 : 0x0F172A);
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const auto at = static_cast<std::size_t>(y * width + x);
            const float alpha = wide[at] + close[at] * (1 - wide[at]);
            image.setPixelColor(x, y, QColor::fromRgbF(color.redF(), color.greenF(), color.blueF(), alpha));
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
