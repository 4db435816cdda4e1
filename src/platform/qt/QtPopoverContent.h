#pragma once

#include <functional>

#include "base/Signal.h"
#include "platform/ColorSchemes.h"
#include "platform/Popover.h"

class QWidget;

namespace brindle {

/// A popover's content as a widget. Main thread.
class QtPopoverContent : public PopoverContent {
public:
    /// The one widget, made when it is first asked for and there as long as the content lives. It belongs to the
    /// content, although the popover's window becomes its parent; it fills the popover, corners included, and paints
    /// its whole background. A key it does not accept reaches the window, which closes on Escape.
    [[nodiscard]] virtual QWidget& widget() = 0;

    /// The scheme that the widget is painted in, once there is one; the window's edge and shadow follow it.
    [[nodiscard]] virtual ColorScheme colorScheme() const = 0;
    [[nodiscard]] virtual Subscription onColorSchemeChange(std::function<void()> observer) = 0;
};

}  // namespace brindle
