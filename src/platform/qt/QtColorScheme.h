#pragma once

#include "platform/ColorSchemes.h"

namespace brindle {

/// The scheme that the toolkit's own colours follow, for desktops that state no preference.
ColorScheme paletteColorScheme();

}  // namespace brindle
