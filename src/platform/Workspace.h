#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "base/Signal.h"
#include "platform/RunningApplication.h"

namespace brindle {

/// The address of the accessibility page of the running desktop's own settings.
constexpr std::string_view accessibilitySettingsUrl = "settings:accessibility";

/// What is in front, and the applications and addresses that the desktop knows. Main thread.
class Workspace {
public:
    static constexpr double settlingTime = 0.02;  ///< seconds

    virtual ~Workspace() = default;

    /// The application that has the focus, this program included. Empty when none has had it for `settlingTime`; until
    /// then the last answer stands, because window managers report none between two windows.
    [[nodiscard]] virtual RunningApplicationHandle frontmostApplication() const = 0;

    /// Calls after another window came to the front, also one of the same application, or one of this program.
    /// `frontmostApplication` answers with it by then. The handle may be empty.
    [[nodiscard]] virtual Subscription onDidActivateApplication(
        std::function<void(const RunningApplicationHandle&)> observer) = 0;

    /// Hands an address (RFC 3986) to the program that the user chose for it, without waiting for it. False when it
    /// does not parse or the desktop has nothing to hand it to; whether that program can open it is not known here.
    /// `accessibilitySettingsUrl` is understood as well.
    virtual bool openUrl(std::string_view url) = 0;

    /// Path of the installed application with this bundle identifier; none when no such application is installed.
    [[nodiscard]] virtual std::optional<std::string> applicationPath(std::string_view bundleIdentifier) const = 0;

    /// The icon of the application at that path: the absolute path of an image file, or a name in the icon theme. None
    /// when it has none.
    [[nodiscard]] virtual std::optional<std::string> iconForFile(std::string_view path) const = 0;
};

}  // namespace brindle
