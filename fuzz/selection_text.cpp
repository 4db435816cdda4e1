#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "base/Unicode.h"
#include "platform/x11/X11SelectionText.h"

using namespace brindle;

/// The first byte is the length of the pieces. However they are cut, text is the same and well-formed.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    std::string_view text(reinterpret_cast<const char*>(bytes), count);
    const std::size_t size = text.empty() ? 1 : std::max<std::size_t>(1, bytes[0]);
    text.remove_prefix(std::min<std::size_t>(1, text.size()));
    for (const auto encoding : {SelectionEncoding::utf8, SelectionEncoding::latin1, SelectionEncoding::utf8OrLatin1}) {
        SelectionTextDecoder whole(encoding);
        whole.append(text);
        SelectionTextDecoder pieces(encoding);
        for (std::size_t at = 0; at < text.size(); at += size)
            pieces.append(text.substr(at, size));
        const std::string expected = whole.take();
        if (pieces.take() != expected || !unicode::isWellFormed(expected))
            std::abort();
    }
    return 0;
}
