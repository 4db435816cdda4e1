#pragma once

#include <string_view>

namespace brindle {

/// A colour in the sRGB space; each component from 0 to 1.
struct Color {
    double red = 0;
    double green = 0;
    double blue = 0;
    double opacity = 1;

    friend bool operator==(const Color&, const Color&) = default;
};

/// The colour that a text of hexadecimal digits stands for: RGB, RRGGBB or AARRGGBB, whatever surrounds it that is
/// neither letter nor digit. It never fails: a text of another length gives an almost transparent colour, and digits
/// that cannot be read count as none.
Color colorFromHex(std::string_view text);

}  // namespace brindle
