#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace brindle {

/// What the program needs of a desktop entry file; what the file leaves out is empty or false.
struct DesktopEntry {
    std::string name;  ///< in the language that was asked for
    std::string exec;
    std::string icon;  ///< an absolute path or a name in the icon theme
    std::string startupWmClass;
    bool isNoDisplay = false;
    bool isHidden = false;  ///< stands for "deleted": it also hides entries of the same name in later folders
};

/// Longer files are no desktop entries.
constexpr std::size_t desktopEntryLimit = 1U << 20U;

/// Reads the text of a desktop entry. `locale` has the form lang_COUNTRY.ENCODING@MODIFIER. Any bytes are safe; none
/// for what is not an application with a name (a hidden one needs neither).
[[nodiscard]] std::optional<DesktopEntry> parseDesktopEntry(std::string_view text, std::string_view locale);

/// The locale of the user's messages as the environment has it; empty when nothing is set.
[[nodiscard]] std::string messagesLocale();

}  // namespace brindle
