#pragma once

#include <QMargins>
#include <QRect>

#include "platform/ColorSchemes.h"

class QPainter;

namespace brindle {

/// The shadow around our windows: a wide one and a close one, both falling downwards.
struct WindowShadow {
    static constexpr QMargins margins{32, 22, 32, 42};  ///< points that it reaches beyond the window's frame

    /// Paints it around and beneath a rounded frame of at least 121 points either way.
    static void paint(QPainter& painter, QRect frame, ColorScheme scheme);
};

}  // namespace brindle
