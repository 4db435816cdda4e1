#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// Files of the user's, without surprises: nothing here waits, whatever stands at a path.
namespace brindle::files {

/// The content of a regular file; none when it is something else, cannot be read or is longer than `limit`.
[[nodiscard]] std::optional<std::string> contents(const std::string& path, std::size_t limit);

/// Makes the folder and those above it that are missing, each with mode 0700. Returns what went wrong, in words.
[[nodiscard]] std::optional<std::string> makeFolders(const std::string& path);

/// Puts a file with mode 0600 in the place of the one that is there, at once and whole. Returns what went wrong.
[[nodiscard]] std::optional<std::string> replace(const std::string& path, std::string_view content);

/// The words for an `errno`.
[[nodiscard]] std::string reason(int error);

}  // namespace brindle::files
