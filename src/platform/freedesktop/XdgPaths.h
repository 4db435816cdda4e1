#pragma once

#include <string>
#include <vector>

namespace brindle::xdg {

/// Folders of the XDG Base Directory rules, without a slash at the end. A variable that is unset, empty or not absolute
/// gives the default.
std::string dataHome();               ///< $XDG_DATA_HOME or ~/.local/share
std::string configHome();             ///< $XDG_CONFIG_HOME or ~/.config
std::vector<std::string> dataDirs();  ///< $XDG_DATA_DIRS or /usr/local/share:/usr/share, most important first

}  // namespace brindle::xdg
