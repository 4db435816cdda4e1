#pragma once

#include <optional>

#include "platform/ColorSchemes.h"

namespace brindle {
class X11Connection;
}

namespace brindle::x11 {

/// Whether the desktop's panel is dark or light, as it is seen on the screen; the largest one when there are several.
/// None where no window says that it is a panel, or none of it is on the screen. Main thread.
std::optional<ColorScheme> panelScheme(X11Connection& connection);

}  // namespace brindle::x11
