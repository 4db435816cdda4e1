#include "views/FooterView.h"

#include <QPainter>

#include "views/Fonts.h"
#include "views/Palette.h"

namespace brindle {

namespace {

constexpr int padding = 8;

QString hint() {
    return QStringLiteral("Cmd+Shift+V toggle • Click to paste");
}

}  // namespace

FooterView::FooterView(QWidget* parent) : QWidget(parent) {
    setAccessibleName(hint());
}

void FooterView::setColorScheme(ColorScheme scheme) {
    scheme_ = scheme;
    update();
}

void FooterView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(0, 0, width(), 1, color(Role::border, scheme_));
    painter.setPen(color(Role::secondaryText, scheme_));
    drawTextLine(painter, rect().adjusted(padding, padding, -padding, -padding), hint(), TextStyle::secondCaption,
                 Qt::AlignHCenter);
}

}  // namespace brindle
