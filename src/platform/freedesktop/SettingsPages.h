#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace brindle {

/// The program and its arguments that open the page of the desktop's settings which an address names, for the desktops
/// of `XDG_CURRENT_DESKTOP`. Empty when it names none, or when none of these desktops has that page.
[[nodiscard]] std::vector<std::string> settingsCommand(std::string_view url, std::string_view currentDesktops);

}  // namespace brindle
