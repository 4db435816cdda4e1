#include "base/Unicode.h"

#include <unicode/bytestream.h>
#include <unicode/normalizer2.h>
#include <unicode/stringpiece.h>
#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

namespace brindle::unicode {

namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";

const icu::Normalizer2& composer() {
    UErrorCode status = U_ZERO_ERROR;
    return *icu::Normalizer2::getNFCInstance(status);
}

icu::StringPiece piece(std::string_view text) {
    return {text.data(), static_cast<std::int32_t>(text.size())};
}

/// The well-formed run at some place, as long as it goes, or the ill-formed piece there.
struct Run {
    std::size_t end;
    bool isWell;
};

Run nextRun(std::string_view text, std::size_t start) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    const auto size = text.size();
    for (std::size_t at = asciiEnd(text, start); at < size;) {
        std::size_t next = at;
        UChar32 character;
        U8_NEXT(bytes, next, size, character);
        if (character < 0)
            return at > start ? Run{at, true} : Run{next, false};
        at = asciiEnd(text, next);
    }
    return {size, true};
}

/// Whether there is a run of combining marks far longer than any script makes (UAX #15 allows 30 in its stream-safe
/// form). Putting one in order takes the square of its length: minutes for a megabyte.
bool hasEndlessMarks(std::string_view text) {
    constexpr std::size_t longest = 256;       // bytes
    constexpr std::size_t step = longest / 2;  // half of a longer run lies behind some step
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    for (std::size_t look = 0; look < text.size(); look += step) {
        std::size_t at = look;
        U8_SET_CP_START(bytes, 0, at);
        UChar32 character = 0;
        do
            U8_NEXT(bytes, at, text.size(), character);
        while (character >= 0 && u_getCombiningClass(character) != 0 && at < text.size() && at - look < step);
        if (at - look >= step)
            return true;
    }
    return false;
}

}  // namespace

std::size_t asciiEnd(std::string_view text, std::size_t start) {
    constexpr std::uint64_t notAscii = 0x8080808080808080U;
    std::array<std::uint64_t, 4> four;
    for (; start + sizeof four <= text.size(); start += sizeof four) {
        std::memcpy(four.data(), text.data() + start, sizeof four);
        if (((four[0] | four[1] | four[2] | four[3]) & notAscii) != 0)
            break;
    }
    std::uint64_t eight;
    for (; start + sizeof eight <= text.size(); start += sizeof eight) {
        std::memcpy(&eight, text.data() + start, sizeof eight);
        if ((eight & notAscii) != 0)
            break;
    }
    return start;
}

bool isAscii(std::string_view text) {
    return std::all_of(text.begin() + static_cast<std::ptrdiff_t>(asciiEnd(text, 0)), text.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

bool isWellFormed(std::string_view text) {
    const Run run = nextRun(text, 0);
    return run.isWell && run.end == text.size();
}

std::string repaired(std::string text) {
    if (isWellFormed(text))
        return text;
    std::string result;
    result.reserve(text.size() + replacement.size());
    for (std::size_t at = 0; at < text.size();) {
        const Run run = nextRun(text, at);
        result.append(run.isWell ? std::string_view(text).substr(at, run.end - at) : replacement);
        at = run.end;
    }
    return result;
}

bool isComposed(std::string_view text) {
    if (isAscii(text) || hasEndlessMarks(text))
        return true;
    UErrorCode status = U_ZERO_ERROR;
    return composer().isNormalizedUTF8(piece(text), status) && U_SUCCESS(status);
}

std::string composed(std::string_view text) {
    if (isAscii(text) || hasEndlessMarks(text))
        return std::string(text);
    std::string result;
    icu::StringByteSink<std::string> sink(&result);
    UErrorCode status = U_ZERO_ERROR;
    composer().normalizeUTF8(0, piece(text), sink, nullptr, status);
    return U_SUCCESS(status) ? result : std::string(text);
}

std::string_view trimmed(std::string_view text) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    std::size_t begin = 0;
    std::size_t end = text.size();
    while (begin < end) {
        std::size_t next = begin;
        UChar32 character;
        U8_NEXT(bytes, next, end, character);
        if (!u_isUWhiteSpace(character))
            break;
        begin = next;
    }
    while (end > begin) {
        std::size_t start = end - 1;
        while (start > begin && end - start < 4 && U8_IS_TRAIL(bytes[start]))
            --start;
        std::size_t next = start;
        UChar32 character;
        U8_NEXT(bytes, next, end, character);
        if (next != end || !u_isUWhiteSpace(character))
            break;
        end = start;
    }
    return text.substr(begin, end - begin);
}

}  // namespace brindle::unicode
