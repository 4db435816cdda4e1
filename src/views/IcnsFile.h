#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace brindle {

/// The PNG member of an icon container (.icns) with the most pixels. Any bytes are safe; none when there is none.
[[nodiscard]] std::optional<std::string> largestPng(std::string_view icns);

}  // namespace brindle
