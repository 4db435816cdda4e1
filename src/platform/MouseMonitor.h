#pragma once

#include <cstdint>
#include <functional>

#include "base/Signal.h"
#include "platform/Geometry.h"

namespace brindle {

/// The mouse outside this program's own windows. Main thread.
class MouseMonitor {
public:
    virtual ~MouseMonitor() = default;

    /// Calls the handler for each mouse-up of the mask (`leftMouseUpMask`, `rightMouseUpMask`) that goes to another
    /// application; this program's windows and its status item are not other applications. An empty subscription when
    /// the desktop cannot tell.
    [[nodiscard]] virtual Subscription addGlobalMonitor(std::uint64_t mask, std::function<void()> handler) = 0;

    [[nodiscard]] virtual Point mouseLocation() const = 0;
};

}  // namespace brindle
