#include "views/Switch.h"

#include <QPainter>

#include "platform/qt/SoftShadow.h"
#include "views/FocusRing.h"
#include "views/Palette.h"

namespace brindle {

namespace {

// Points.
constexpr QSize trackSize(38, 22);
constexpr double padding = 2;
constexpr double knobSize = 18;

const SoftShadow knobShadow = {{0, 1}, 1, QColor(2, 6, 23, 77)};

}  // namespace

Switch::Switch(const QString& name, QWidget* parent) : Control(name, parent) {
    setCheckable(true);
    setFixedSize(trackSize);
}

void Switch::paint(QPainter& painter) {
    const double trackRadius = height() / 2.0;
    fillRounded(painter, rect(), trackRadius, isChecked() ? accentColor() : color(Role::switchOff, colorScheme()));
    const double left = isChecked() ? width() - padding - knobSize : padding;
    const QRectF knob(left, padding, knobSize, knobSize);
    paintShadow(painter, knob, knobSize / 2, knobShadow);
    fillRounded(painter, knob, knobSize / 2, color(Role::onAccent, colorScheme()));
    if (showsFocusRing())
        paintFocusRing(painter, rect(), trackRadius, color(Role::focusRing, colorScheme()));
}

}  // namespace brindle
