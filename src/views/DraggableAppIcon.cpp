#include "views/DraggableAppIcon.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleHints>

#include "platform/Bundle.h"
#include "platform/Platform.h"
#include "platform/qt/FileDrag.h"
#include "platform/qt/SoftShadow.h"
#include "views/AccessibleRole.h"
#include "views/ApplicationImage.h"
#include "views/Symbols.h"

namespace brindle {

namespace {

constexpr double cornerRadius = 16;  // points
constexpr QPoint corner(DraggableAppIcon::shadowRoom, DraggableAppIcon::shadowRoom);

const SoftShadow iconShadow = {{0, 0}, 4, QColor(0, 0, 0, 84)};

QPixmap icon(double ratio) {
    const QPixmap image = applicationImage(DraggableAppIcon::iconSize, ratio);
    return image.isNull() ? image : withRoundCorners(image, cornerRadius);
}

}  // namespace

DraggableAppIcon::DraggableAppIcon(QWidget* parent) : QWidget(parent) {
    constexpr int side = iconSize + 2 * shadowRoom;
    setFixedSize(side, side);
    if (icon(devicePixelRatioF()).isNull())
        return;
    setAccessible(*this, QAccessible::Graphic, QStringLiteral("Brindle"));
    setCursor(Qt::OpenHandCursor);
}

void DraggableAppIcon::mousePressEvent(QMouseEvent* event) {
    const QPoint place = event->position().toPoint();
    if (event->button() == Qt::LeftButton && QRect(corner, QSize(iconSize, iconSize)).contains(place))
        pressedAt_ = place;
}

void DraggableAppIcon::mouseMoveEvent(QMouseEvent* event) {
    const bool isHeld = pressedAt_ && event->buttons().testFlag(Qt::LeftButton);
    if (!isHeld || (event->position().toPoint() - *pressedAt_).manhattanLength() <
                       QGuiApplication::styleHints()->startDragDistance())
        return;
    pressedAt_.reset();
    const QPixmap picture = icon(devicePixelRatioF());
    if (picture.isNull())
        return;
    Bundle& bundle = platform().bundle();
    dragFile(bundle.executablePath().value_or(bundle.bundlePath()), picture);
}

void DraggableAppIcon::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QPixmap picture = icon(brindle::devicePixelRatio(painter));
    if (picture.isNull())
        return;
    paintShadow(painter, corner, picture, iconShadow);
    painter.drawPixmap(corner, picture);
}

}  // namespace brindle
