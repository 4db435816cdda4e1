#include "views/SymbolButton.h"

#include <QPainter>
#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

#include "views/Palette.h"
#include "views/Symbols.h"

namespace brindle {

namespace {

struct Appearance {
    QSize size;
    std::string_view symbol;
    int symbolSize;
    double radius;
    // At rest, hovered, pressed
    std::array<std::optional<Role>, 3> fill;
    std::array<Role, 3> ink;
};

const std::array<Appearance, 3> appearances = {{
    {{30, 30},
     "gearshape.fill",
     18,
     6,
     {std::nullopt, Role::tabHover, Role::control},
     {Role::secondaryText, Role::activeText, Role::activeText}},
    {{30, 28},
     "plus",
     14,
     6,
     {Role::control, Role::controlHover, Role::controlPressed},
     {Role::secondaryText, Role::activeText, Role::activeText}},
    {{24, 24}, "xmark.circle.fill", 20, 12, {}, {Role::secondaryText, Role::activeText, Role::primaryText}},
}};

const Appearance& appearance(SymbolButton::Kind kind) {
    return appearances[static_cast<std::size_t>(kind)];
}

}  // namespace

SymbolButton::SymbolButton(Kind kind, const QString& name, QWidget* parent) : Control(name, parent), kind_(kind) {
    setFixedSize(appearance(kind).size);
}

void SymbolButton::paint(QPainter& painter) {
    const Appearance& drawn = appearance(kind_);
    const auto state = static_cast<std::size_t>(look());
    if (drawn.fill[state])
        fillRounded(painter, rect(), drawn.radius, color(*drawn.fill[state], colorScheme()));
    const QPoint corner((width() - drawn.symbolSize) / 2, (height() - drawn.symbolSize) / 2);
    drawSymbol(painter, corner, drawn.symbol, drawn.symbolSize, color(drawn.ink[state], colorScheme()));
    if (showsFocusRing())
        paintFocusRing(painter, rect(), drawn.radius, color(Role::focusRing, colorScheme()));
}

}  // namespace brindle
