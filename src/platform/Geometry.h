#pragma once

namespace brindle {

/// Positions and sizes on the desktop in points (device-independent pixels); the origin is the top left of the
/// primary screen and y grows downwards.
struct Point {
    double x = 0;
    double y = 0;
    friend bool operator==(const Point&, const Point&) = default;
};

struct Size {
    double width = 0;
    double height = 0;
    friend bool operator==(const Size&, const Size&) = default;
};

struct Rect {
    Point origin;
    Size size;
    friend bool operator==(const Rect&, const Rect&) = default;

    /// The left and top edges belong to the rectangle, the right and bottom ones do not.
    [[nodiscard]] bool contains(Point point) const {
        return point.x >= origin.x && point.x < origin.x + size.width && point.y >= origin.y &&
               point.y < origin.y + size.height;
    }
};

}  // namespace brindle
