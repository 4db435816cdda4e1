#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "platform/freedesktop/DesktopEntry.h"

/// The first line is the locale. An application that is not hidden has a name.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    const std::string_view text(reinterpret_cast<const char*>(bytes), count);
    const auto end = std::min(text.find('\n'), text.size());
    const auto entry = brindle::parseDesktopEntry(text.substr(end), text.substr(0, end));
    if (entry && !entry->isHidden && entry->name.empty())
        std::abort();
    return 0;
}
