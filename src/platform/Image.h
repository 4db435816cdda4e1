#pragma once

#include <string>

#include "platform/Geometry.h"

namespace brindle {

/// A picture by the file that holds it. It is drawn at `size` points, at the resolution of the place where it is shown.
struct Image {
    std::string path;
    Size size;
    bool isTemplate = false;  ///< only its shape counts; whoever shows it chooses the colour
};

}  // namespace brindle
