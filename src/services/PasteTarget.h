#pragma once

#include <optional>
#include <string>

#include "platform/RunningApplication.h"

namespace brindle {

/// Whether that is this program's own bundle identifier. Two absent ones are equal.
[[nodiscard]] bool isOwnBundleIdentifier(const std::optional<std::string>& identifier);

/// The identifier of an application that may be none.
[[nodiscard]] std::optional<std::string> bundleIdentifier(const RunningApplicationHandle& app);

/// Whether the user can have worked in it before Brindle came forward: an ordinary application that is running and is
/// not this program. False for none.
[[nodiscard]] bool isPasteTarget(const RunningApplicationHandle& app);

/// Its localized name for the log; "Unknown" when it has none or there is no application.
[[nodiscard]] std::string shortName(const RunningApplicationHandle& app);

/// The same, but its bundle identifier before "Unknown".
[[nodiscard]] std::string fullName(const RunningApplicationHandle& app);

}  // namespace brindle
