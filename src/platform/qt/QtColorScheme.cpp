#include "platform/qt/QtColorScheme.h"

#include <QGuiApplication>
#include <QPalette>

namespace brindle {

ColorScheme paletteColorScheme() {
    const QPalette palette = QGuiApplication::palette();
    const bool isDark = palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
    return isDark ? ColorScheme::dark : ColorScheme::light;
}

}  // namespace brindle
