#include "base/TextSearch.h"

#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/locid.h>
#include <unicode/stringpiece.h>
#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <cstdint>

#include "base/Unicode.h"

namespace brindle {

namespace {

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

/// One byte of the wanted text, compared without branches so that a compiler can look at many places at once.
class CaseBlindByte {
public:
    explicit CaseBlindByte(char wanted) : wanted_(wanted), caseBit_(wanted >= 'a' && wanted <= 'z' ? 'a' - 'A' : 0) {}
    [[nodiscard]] bool is(char c) const { return (c | caseBit_) == wanted_; }

private:
    char wanted_;
    char caseBit_;
};

constexpr std::size_t blockSize = 64;

/// Whether the text may hold a character whose folded or composed form has ASCII in it, such as ß, the ligatures or the
/// Kelvin sign: the first two bytes of all of them (Unicode 15, CaseFolding.txt; singletons of UAX #15).
bool mayFoldToAscii(std::string_view text) {
    static constexpr std::array<std::array<unsigned char, 2>, 9> beginnings = {{{0xC3, 0x9F},
                                                                                {0xC4, 0xB0},
                                                                                {0xC5, 0x89},
                                                                                {0xC5, 0xBF},
                                                                                {0xCD, 0xBE},
                                                                                {0xE1, 0xBA},
                                                                                {0xE1, 0xBF},
                                                                                {0xE2, 0x84},
                                                                                {0xEF, 0xAC}}};
    for (std::size_t at = unicode::asciiEnd(text, 0); at + 1 < text.size(); at = unicode::asciiEnd(text, at + 1)) {
        const std::array<unsigned char, 2> two = {static_cast<unsigned char>(text[at]),
                                                  static_cast<unsigned char>(text[at + 1])};
        if (std::ranges::find(beginnings, two) != beginnings.end())
            return true;
    }
    return false;
}

/// Whether the character that starts at `at` belongs to the one before it.
bool continuesCharacter(std::string_view text, std::size_t at) {
    if (at >= text.size())
        return false;
    UChar32 character;
    U8_NEXT(reinterpret_cast<const std::uint8_t*>(text.data()), at, text.size(), character);
    return character >= 0 && (U_GET_GC_MASK(character) & U_GC_M_MASK) != 0;
}

}  // namespace

TextSearch::TextSearch(std::string_view wanted) {
    const std::string_view language = icu::Locale::getDefault().getLanguage();
    isTurkic_ = language == "tr" || language == "az";
    wanted_ = folded(wanted);
    isAscii_ = !isTurkic_ && unicode::isAscii(wanted_);
}

std::string TextSearch::folded(std::string_view text) const {
    // Composed before as well: the dotted I of Turkish, taken apart, would fold to another letter.
    const std::string whole = unicode::composed(text);
    std::string result;
    icu::StringByteSink<std::string> sink(&result);
    UErrorCode status = U_ZERO_ERROR;
    icu::CaseMap::utf8Fold(isTurkic_ ? U_FOLD_CASE_EXCLUDE_SPECIAL_I : U_FOLD_CASE_DEFAULT,
                           icu::StringPiece(whole.data(), static_cast<std::int32_t>(whole.size())), sink, nullptr,
                           status);
    return unicode::composed(U_SUCCESS(status) ? result : whole);
}

bool TextSearch::isFoundAsItStands(std::string_view text) const {
    if (wanted_.size() > text.size())
        return false;
    const std::size_t places = text.size() - wanted_.size() + 1;
    const CaseBlindByte first(wanted_.front());
    const CaseBlindByte last(wanted_.back());
    const char* const firsts = text.data();
    const char* const lasts = firsts + wanted_.size() - 1;
    for (std::size_t start = 0; start < places; start += blockSize) {
        const std::size_t end = std::min(start + blockSize, places);
        bool isPromising = false;
        for (std::size_t at = start; at < end; ++at)
            isPromising |= (unsigned{first.is(firsts[at])} & unsigned{last.is(lasts[at])}) != 0;  // no jump
        for (std::size_t at = start; isPromising && at < end; ++at) {
            if (std::equal(wanted_.begin(), wanted_.end(), firsts + at, [](char w, char c) { return w == lower(c); }) &&
                !continuesCharacter(text, at + wanted_.size()))
                return true;
        }
    }
    return false;
}

bool TextSearch::isFoundIn(std::string_view text) const {
    if (wanted_.empty())
        return true;
    if (isAscii_ && isFoundAsItStands(text))
        return true;
    if (isAscii_ ? !mayFoldToAscii(text) : !isTurkic_ && unicode::isAscii(text))
        return false;
    const std::string haystack = folded(text);
    for (auto at = haystack.find(wanted_); at != std::string::npos; at = haystack.find(wanted_, at + 1)) {
        if (!continuesCharacter(haystack, at + wanted_.size()))
            return true;
    }
    return false;
}

}  // namespace brindle
