#pragma once

#include <optional>
#include <string>
#include <vector>

#include "model/ClipboardItem.h"
#include "model/CustomList.h"

/// The form in which the history and the lists are stored: a UTF-8 JSON array of objects, without an envelope.
/// Dates are numbers of seconds since 2001-01-01 00:00:00 UTC, absent fields are left out, unknown keys are ignored.
namespace brindle {

std::string encodeHistory(const std::vector<ClipboardItem>& history);
std::string encodeLists(const std::vector<CustomList>& lists);

/// All of it or nothing: malformed JSON, a missing key, a wrong type or an unknown item type anywhere gives nothing.
/// Any input is safe, however deep or long. It is read in place, so a caller that is done with it moves it in.
std::optional<std::vector<ClipboardItem>> decodeHistory(std::string json);
std::optional<std::vector<CustomList>> decodeLists(std::string json);

}  // namespace brindle
