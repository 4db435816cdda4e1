#include "views/ApplicationImage.h"

#include <QGuiApplication>
#include <QIcon>
#include <QPainter>

#include "platform/Bundle.h"
#include "platform/Platform.h"
#include "platform/qt/QtText.h"
#include "views/Symbols.h"

namespace brindle {

QPixmap applicationImage(int points, double devicePixelRatio) {
    if (const auto path = platform().bundle().imageNamed("AppIcon")) {
        QPixmap image = imagePixmap(toQString(*path), points, devicePixelRatio);
        if (!image.isNull())
            return image;
    }
    return QGuiApplication::windowIcon().pixmap(QSize(points, points), devicePixelRatio);
}

QPixmap withRoundCorners(const QPixmap& picture, double radius) {
    QPixmap rounded(picture.size());
    rounded.setDevicePixelRatio(picture.devicePixelRatioF());
    rounded.fill(Qt::transparent);
    QPainter painter(&rounded);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.drawRoundedRect(QRectF(QPointF(), picture.deviceIndependentSize()), radius, radius);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.drawPixmap(0, 0, picture);
    return rounded;
}

}  // namespace brindle
