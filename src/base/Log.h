#pragma once

#include <functional>
#include <string_view>

namespace brindle {

/// Writes one diagnostic line to standard output at once, control characters (which may come with the name of an
/// application) as spaces. It never holds anything that a user copied. A reader that does not read costs the line.
void log(std::string_view line);

/// Where `log` writes instead, for tests; an empty function gives standard output back.
void setLogSink(std::function<void(std::string_view)> sink);

}  // namespace brindle
