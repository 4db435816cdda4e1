#pragma once

#include <functional>

#include "base/Signal.h"

namespace brindle {

enum class InstanceClaim {
    first,       ///< this process is the one of the user's session
    handedOver,  ///< another one is, and was told of this start
    held         ///< another one is, but cannot be told
};

/// One Brindle a user session: two would overwrite each other's history. Main thread.
class SingleInstance {
public:
    virtual ~SingleInstance() = default;

    /// Atomic among starts that race. Called before the defaults store is opened; any answer but `first` ends the
    /// process.
    [[nodiscard]] virtual InstanceClaim claim() = 0;

    /// Calls on the main thread for each later start of the program.
    [[nodiscard]] virtual Subscription onSecondStart(std::function<void()> observer) = 0;
};

}  // namespace brindle
