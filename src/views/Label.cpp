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
    layOut(layout, width());
    layout.draw(&painter, {});
}

int Label::heightForWidth(int width) const {
    QTextLayout layout(text_, textFont(look_.style));
    return layOut(layout, width) * lineHeight(look_.style);
}

int Label::layOut(QTextLayout& layout, double width) const {
    layout.setTextOption(QTextOption(look_.alignment));
    layout.beginLayout();
    int count = 0;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        // The lines are as high as the design has them, whatever the font says.
        line.setPosition({0, count * lineHeight(look_.style) + baseline(look_.style) - line.ascent()});
        ++count;
    }
    layout.endLayout();
    return count;
}

}  // namespace brindle
