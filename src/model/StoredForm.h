#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model/ClipboardItem.h"
#include "model/CustomList.h"

/// The form in which the history and the lists are stored: a UTF-8 JSON array of objects, without an envelope.
/// Dates are numbers of seconds since 2001-01-01 00:00:00 UTC, absent fields are left out, unknown keys are ignored.
namespace brindle {

std::string encodeHistory(const std::vector<ClipboardItem>& history);
std::string encodeLists(const std::vector<CustomList>& lists);

/// All of it or nothing: malformed JSON, a missing key, a wrong type or an unknown item type anywhere gives nothing.
/// Any input is safe, however deep or long.
std::optional<std::vector<ClipboardItem>> decodeHistory(std::string_view json);
std::optional<std::vector<CustomList>> decodeLists(std::string_view json);

}  // namespace brindle
