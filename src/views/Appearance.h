#pragma once

#include <string_view>

#include "platform/ColorSchemes.h"
#include "services/AppTheme.h"

namespace brindle {

/// Light or dark for a theme, asking the desktop for `system`.
ColorScheme schemeOf(AppTheme theme);

/// The same for a stored text; one that names no theme is dark.
ColorScheme schemeOf(std::string_view storedTheme);

}  // namespace brindle
