#include "views/IcnsFile.h"

#include <cstddef>
#include <cstdint>

namespace brindle {

namespace {

constexpr std::size_t memberHeader = 8;  // type and length; the whole file has one, too

/// Big-endian, four bytes, which are there.
std::uint32_t numberAt(std::string_view bytes, std::size_t offset) {
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < 4; ++i)
        number = number << 8U | static_cast<unsigned char>(bytes[offset + i]);
    return number;
}

/// Of a PNG, as its first chunk has it; 0 for anything else.
std::uint32_t widthOf(std::string_view content) {
    constexpr std::string_view beginning("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16);
    return content.size() > beginning.size() + 8 && content.starts_with(beginning) ? numberAt(content, 16) : 0;
}

}  // namespace

std::optional<std::string> largestPng(std::string_view icns) {
    if (icns.size() < memberHeader || !icns.starts_with("icns"))
        return std::nullopt;
    icns = icns.substr(0, numberAt(icns, 4));
    std::string_view largest;
    for (std::size_t at = memberHeader; at + memberHeader <= icns.size();) {
        const std::size_t length = numberAt(icns, at + 4);
        if (length < memberHeader || length > icns.size() - at)
            break;
        const auto content = icns.substr(at + memberHeader, length - memberHeader);
        if (widthOf(content) > widthOf(largest))
            largest = content;
        at += length;
    }
    return largest.empty() ? std::nullopt : std::optional(std::string(largest));
}

}  // namespace brindle
