#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <utility>

/// The defaults store's file as a file, with the companions that the database puts beside it.
namespace brindle::defaultsfile {

/// What keeps the file, or a companion, from being ours; nothing where all is well or nothing is there.
[[nodiscard]] std::optional<std::string> obstacle(const std::string& path);

/// Whether anything stands at the path, a link that leads nowhere included.
[[nodiscard]] bool exists(const std::string& path);

/// Whether there is nothing to read at the path.
[[nodiscard]] bool isEmpty(const std::string& path);

/// Which file something is, wherever it goes. Device and inode; zeros where there is none.
using Identity = std::pair<dev_t, ino_t>;
[[nodiscard]] Identity identity(const std::string& path);

/// Whether nothing stands at the path or another file than that one. No when it cannot be seen.
[[nodiscard]] bool isElsewhere(const std::string& path, const Identity& file);

/// Makes the file if need be, and it and its companions readable for this user alone; the database gives those that it
/// makes the same mode. Returns an `errno`, or 0.
[[nodiscard]] int secure(const std::string& path);

/// Gives the file and its companions a name with the date, and that name back; none when that failed. Nobody has it
/// open.
[[nodiscard]] std::optional<std::string> moveAside(const std::string& path);

}  // namespace brindle::defaultsfile
