#pragma once

#include <optional>
#include <string>

namespace brindle {

/// This program as something that the desktop starts when the user logs in.
class LoginItem {
public:
    virtual ~LoginItem() = default;

    /// Both return what went wrong, in words, or nothing. Unregistering what is not registered is no failure.
    [[nodiscard]] virtual std::optional<std::string> registerItem() = 0;
    [[nodiscard]] virtual std::optional<std::string> unregisterItem() = 0;
};

}  // namespace brindle
