#pragma once

#include <functional>

#include "platform/ColorSchemes.h"

namespace brindle {

/// The scheme that the toolkit's own colours follow, for desktops that state no preference.
ColorScheme paletteColorScheme();

/// Calls when the toolkit's colours changed. Main thread.
[[nodiscard]] Subscription onPaletteChange(std::function<void()> observer);

}  // namespace brindle
