#pragma once

#include <functional>

#include "base/Signal.h"

namespace brindle {

enum class ColorScheme { light, dark };

/// The desktop's own preference for light or dark. Main thread.
class ColorSchemes {
public:
    virtual ~ColorSchemes() = default;
    [[nodiscard]] virtual ColorScheme systemColorScheme() const = 0;
    /// Calls after the preference changed.
    [[nodiscard]] virtual Subscription onChange(std::function<void()> observer) = 0;
};

}  // namespace brindle
