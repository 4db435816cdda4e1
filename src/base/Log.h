#pragma once

#include <functional>
#include <string_view>

namespace brindle {

/// Writes one diagnostic line to standard output and flushes it. The text has no line end of its own and never holds
/// anything that a user copied.
void log(std::string_view line);

/// Where `log` writes instead, for tests; an empty function gives standard output back.
void setLogSink(std::function<void(std::string_view)> sink);

}  // namespace brindle
