#pragma once

#include <cstdint>
#include <functional>

#include "base/Signal.h"
#include "platform/Geometry.h"

namespace brindle {

/// The mouse outside this program's own windows. Main thread.
class MouseMonitor {
public:
    /// Seconds in which a click in a tray that draws our icon itself reaches us as a click on the status item.
    static constexpr double statusClickGrace = 0.15;

    virtual ~MouseMonitor() = default;

    /// Calls the handler for each mouse-up of the mask (`leftMouseUpMask`, `rightMouseUpMask`) whose press, made after
    /// this call, went to another application; this program's windows and its status item are not other applications.
    /// A click on the tray is held back for `statusClickGrace`, in which the status item may claim it. While the
    /// handler runs, `mouseLocation` is the place of that release. An empty subscription when the desktop cannot tell.
    [[nodiscard]] virtual Subscription addGlobalMonitor(std::uint64_t mask, std::function<void()> handler) = 0;

    [[nodiscard]] virtual Point mouseLocation() const = 0;
};

}  // namespace brindle
