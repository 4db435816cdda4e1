#pragma once

#include <string>
#include <string_view>

#include "platform/Geometry.h"

namespace brindle {

/// What the desktop itself shows for an action, by its name in the icon theme.
inline constexpr std::string_view actionImageName = "system-run";

/// A picture by the file that holds it, or by its name in the desktop's icon theme. It is drawn at `size` points, at
/// the resolution of the place where it is shown.
struct Image {
    std::string path;  ///< absolute; anything else is a name in the icon theme
    Size size;
    bool isTemplate = false;  ///< only its shape counts; whoever shows it chooses the colour
};

}  // namespace brindle
