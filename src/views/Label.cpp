#include "views/Label.h"

#include <QPainter>
#include <QTextLayout>

#include "views/AccessibleRole.h"

namespace brindle {

Label::Label(const QString& text, Look look, QWidget* parent) : QWidget(parent), text_(text), look_(look) {
    setAccessible(*this, QAccessible::StaticText, text);
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void Label::setColorScheme(ColorScheme scheme) {
    scheme_ = scheme;
    update();
}

void Label::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(color(look_.color, scheme_));
    QTextLayout layout(text_, textFont(look_.style));
    layout.setTextOption(QTextOption(look_.alignment));
    layout.beginLayout();
    // The lines are as high as the design has them, whatever the font says.
    double top = 0;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width());
        line.setPosition({0, top + baseline(look_.style) - line.ascent()});
        top += lineHeight(look_.style);
    }
    layout.endLayout();
    layout.draw(&painter, {});
}

}  // namespace brindle
