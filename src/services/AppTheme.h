#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace brindle {

enum class AppTheme { light, dark, system };

/// In the order in which they are offered.
constexpr std::array allAppThemes = {AppTheme::light, AppTheme::dark, AppTheme::system};

/// The text that stands for the theme in the store and in the settings panel.
constexpr std::string_view rawValue(AppTheme theme) {
    constexpr std::array<std::string_view, 3> raw = {"Light", "Dark", "System"};
    return raw[static_cast<std::size_t>(theme)];
}

/// The theme of that name, capitals included; none for any other text.
constexpr std::optional<AppTheme> appThemeFromRawValue(std::string_view raw) {
    for (const AppTheme theme : allAppThemes) {
        if (rawValue(theme) == raw)
            return theme;
    }
    return std::nullopt;
}

}  // namespace brindle
