#include "views/Control.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QPainter>

namespace brindle {

Control::Control(const QString& name, QWidget* parent) : QAbstractButton(parent) {
    setAccessibleName(name);
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
}

void Control::setColorScheme(ColorScheme scheme) {
    if (scheme == scheme_)
        return;
    scheme_ = scheme;
    update();
}

void Control::setMenuOpen(bool isOpen) {
    isMenuOpen_ = isOpen;
    update();
}

Control::Look Control::look() const {
    if (isDown() || isMenuOpen_)
        return Look::pressed;
    return isEnabled() && underMouse() ? Look::hover : Look::rest;
}

void Control::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paint(painter);
}

void Control::focusInEvent(QFocusEvent* event) {
    ring_.gained(event->reason());
    QAbstractButton::focusInEvent(event);
}

/// The release of a button that is down goes elsewhere.
void Control::hideEvent(QHideEvent* event) {
    setDown(false);
    QAbstractButton::hideEvent(event);
}

void Control::keyPressEvent(QKeyEvent* event) {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const bool isArrow = event->key() >= Qt::Key_Left && event->key() <= Qt::Key_Down;
    if (isReturn) {
        if (!event->isAutoRepeat())
            click();
    } else if (isArrow) {
        event->ignore();  // the base class would take it for Tab; whoever holds the control may want it
    } else {
        QAbstractButton::keyPressEvent(event);
    }
}

void Control::mousePressEvent(QMouseEvent* event) {
    ring_.clicked();
    QAbstractButton::mousePressEvent(event);
}

}  // namespace brindle
