#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace brindle {

/// How much of an application a user sees. The values are those that the log of other desktops knows.
enum class ActivationPolicy {
    regular = 0,    ///< an ordinary application with an entry in the taskbar
    accessory = 1,  ///< a dock, a desktop, a utility without a taskbar entry
    prohibited = 2  ///< never comes to the front
};

constexpr std::int32_t unknownProcess = -1;

/// A handle on another running application as it was when it was asked for: on X11 the very window that was in front.
/// Main thread. May outlive the application.
class RunningApplication {
public:
    virtual ~RunningApplication() = default;

    [[nodiscard]] virtual std::optional<std::string> bundleIdentifier() const = 0;  ///< its desktop entry's name
    [[nodiscard]] virtual std::optional<std::string> localizedName() const = 0;
    [[nodiscard]] virtual std::int32_t processIdentifier() const = 0;  ///< `unknownProcess`: not told
    [[nodiscard]] virtual ActivationPolicy activationPolicy() const = 0;
    [[nodiscard]] virtual bool isTerminated() const = 0;  ///< the process or the window is gone

    /// Asks the desktop to bring it to the front, other applications ignored. Returns whether the request could be
    /// made; that it was followed shows in the workspace's frontmost application.
    virtual bool activate() = 0;
};

using RunningApplicationHandle = std::shared_ptr<RunningApplication>;  ///< empty: none

}  // namespace brindle
