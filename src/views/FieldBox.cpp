#include "views/FieldBox.h"

#include <QEvent>
#include <QPainter>

#include "views/FocusRing.h"
#include "views/Palette.h"
#include "views/Symbols.h"

namespace brindle {

namespace {

constexpr int symbolSize = 16;
constexpr int symbolGap = 8;

}  // namespace

FieldBox::FieldBox(Published<std::string>& text, const QString& placeholder, Shape shape, QWidget* parent)
    : QWidget(parent), shape_(shape), field_(text, placeholder, this) {
    const int before = shape.padding + (shape.symbol.empty() ? 0 : symbolSize + symbolGap);
    field_.setTextMargins(before - TextField::inset, 0, shape.padding - TextField::inset, 0);
    field_.setAttribute(Qt::WA_Hover);
    field_.installEventFilter(this);
}

void FieldBox::setColorScheme(ColorScheme scheme) {
    scheme_ = scheme;
    field_.setColorScheme(scheme);
    update();
}

void FieldBox::setBoxGeometry(const QRect& box) {
    setGeometry(box.adjusted(-glow, -glow, glow, glow));
}

bool FieldBox::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::Enter:
        case QEvent::Leave:
        case QEvent::FocusIn:
        case QEvent::FocusOut:
            update();
            break;
        default:
            break;
    }
    return QWidget::eventFilter(watched, event);
}

void FieldBox::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (field_.hasFocus())
        strokeRounded(painter, rect(), shape_.radius + glow, glow, color(Role::focusGlow, scheme_));
    fillRounded(painter, box(), shape_.radius, color(Role::input, scheme_));
    const Role outline = field_.hasFocus() ? Role::accent : field_.underMouse() ? Role::inputHover : Role::border;
    strokeRounded(painter, box(), shape_.radius, 1, color(outline, scheme_));
    if (!shape_.symbol.empty())
        drawSymbol(painter, QPointF(box().left() + shape_.padding, box().center().y() + 1 - symbolSize / 2.0),
                   shape_.symbol, symbolSize, color(Role::secondaryText, scheme_));
}

void FieldBox::resizeEvent(QResizeEvent*) {
    field_.setGeometry(box());
}

}  // namespace brindle
