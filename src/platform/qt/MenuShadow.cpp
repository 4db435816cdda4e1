#include "platform/qt/MenuShadow.h"

#include <QMenu>
#include <QPainter>
#include <QRasterWindow>

#include "platform/qt/SoftShadow.h"

namespace brindle {

namespace {

SoftShadow shadowFor(ColorScheme scheme) {
    return {{0, 6}, 9, scheme == ColorScheme::dark ? QColor(2, 6, 23, 115) : QColor(15, 23, 42, 51)};
}

}  // namespace

class MenuShadow::Window final : public QRasterWindow {
public:
    Window(double cornerRadius, ColorScheme scheme) : cornerRadius_(cornerRadius), shadow_(shadowFor(scheme)) {
        setFlags(Qt::ToolTip | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint | Qt::WindowTransparentForInput |
                 Qt::WindowDoesNotAcceptFocus);
        QSurfaceFormat format;
        format.setAlphaBufferSize(8);
        setFormat(format);
    }

    /// Where the menu is on the desktop, in points.
    void surround(QRect menu) {
        const int room = shadow_.reach();
        setGeometry(menu.adjusted(-room, -room, room, room).translated(shadow_.offset.toPoint()));
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        const int room = shadow_.reach();
        QPainter painter(this);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.fillRect(QRect(QPoint(), size()), Qt::transparent);
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        painter.setRenderHint(QPainter::Antialiasing);
        const QRectF menu = QRectF(QPointF(), size()).adjusted(room, room, -room, -room).translated(-shadow_.offset);
        paintShadow(painter, menu, cornerRadius_, shadow_);
        // Not below the menu: of two such windows the server has the newer one above.
        painter.setCompositionMode(QPainter::CompositionMode_Clear);
        painter.setPen(Qt::NoPen);
        painter.setBrush(Qt::black);
        painter.drawRoundedRect(menu, cornerRadius_, cornerRadius_);
    }

private:
    double cornerRadius_;
    SoftShadow shadow_;
};

MenuShadow::MenuShadow(QMenu& menu, double cornerRadius, ColorScheme scheme)
    : QObject(&menu), menu_(menu), window_(std::make_unique<Window>(cornerRadius, scheme)) {
    menu.installEventFilter(this);
}

MenuShadow::~MenuShadow() = default;

bool MenuShadow::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::Show:
        case QEvent::Move:
        case QEvent::Resize:
            follow();
            break;
        case QEvent::Hide:
            window_->hide();
            break;
        default:
            break;
    }
    return QObject::eventFilter(watched, event);
}

void MenuShadow::follow() {
    if (!menu_.isVisible())
        return;
    window_->surround(menu_.geometry());
    window_->show();
}

}  // namespace brindle
