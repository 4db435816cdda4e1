#include "views/ScaledImage.h"

#include <QPainter>

#include "views/Symbols.h"

namespace brindle {

void drawScaled(QPainter& painter, const QRect& place, const QImage& image) {
    const double ratio = devicePixelRatio(painter);
    QImage scaled = image.scaled(place.size() * ratio, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    scaled.setDevicePixelRatio(ratio);
    painter.drawImage(place.topLeft(), scaled);
}

}  // namespace brindle
