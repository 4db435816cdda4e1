#pragma once

#include <array>
#include <cstddef>
#include <string_view>

/// The names under which records are stored, in the order in which they are written.
namespace brindle {

enum ItemKey : std::size_t { idKey, contentKey, typeKey, dateKey, sourceAppKey, isPinnedKey, listIdKey };
inline constexpr std::array<std::string_view, 7> itemKeys = {"id",        "content",  "type",  "date",
                                                             "sourceApp", "isPinned", "listId"};

enum ListKey : std::size_t { listIdentityKey, nameKey, createdAtKey };
inline constexpr std::array<std::string_view, 3> listKeys = {"id", "name", "createdAt"};

}  // namespace brindle
