#include "views/PushButton.h"

#include <QPainter>
#include <array>
#include <cstddef>

#include "views/Palette.h"

namespace brindle {

namespace {

struct Appearance {
    std::array<Role, 3> fill;  // at rest, hovered, pressed
    Role ink;
    TextStyle style;
};

constexpr std::array<Appearance, 4> appearances = {{
    {{Role::control, Role::controlHover, Role::controlPressed}, Role::primaryText, TextStyle::body},
    {{Role::raisedControl, Role::raisedControlHover, Role::raisedControlPressed}, Role::primaryText, TextStyle::body},
    {{Role::accent, Role::accentHover, Role::accentPressed}, Role::onAccent, TextStyle::headline},
    {{Role::danger, Role::dangerHover, Role::dangerPressed}, Role::onAccent, TextStyle::headline},
}};

const Appearance& appearance(PushButton::Kind kind) {
    return appearances[static_cast<std::size_t>(kind)];
}

bool isFilledWithColour(PushButton::Kind kind) {
    return kind == PushButton::Kind::primary || kind == PushButton::Kind::destructive;
}

}  // namespace

PushButton::PushButton(Kind kind, const QString& title, Shape shape, QWidget* parent)
    : Control(title, parent), kind_(kind), radius_(shape.radius), style_(shape.style.value_or(appearance(kind).style)) {
    setText(title);
}

void PushButton::paint(QPainter& painter) {
    const Appearance& drawn = appearance(kind_);
    fillRounded(painter, rect(), radius_, color(drawn.fill[static_cast<std::size_t>(look())], colorScheme()));
    painter.setPen(color(drawn.ink, colorScheme()));
    drawTextLine(painter, rect(), text(), style_, Qt::AlignHCenter);
    if (!showsFocusRing())
        return;
    if (isFilledWithColour(kind_))
        paintFocusRing(painter, QRectF(rect()).adjusted(2, 2, -2, -2), radius_ - 2,
                       color(Role::onAccent, colorScheme()));
    else
        paintFocusRing(painter, rect(), radius_, color(Role::focusRing, colorScheme()));
}

}  // namespace brindle
