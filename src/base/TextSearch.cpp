#include "base/TextSearch.h"

#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/locid.h>
#include <unicode/stringpiece.h>
#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "base/Unicode.h"

namespace brindle {

namespace {

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

char upper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c;
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

bool TextSearch::isFoundInAscii(std::string_view text) const {
    if (wanted_.size() > text.size())
        return false;
    const char first[2] = {wanted_.front(), upper(wanted_.front())};
    const char* const last = text.data() + (text.size() - wanted_.size());
    for (const char* at = text.data(); at <= last; ++at) {
        if ((*at == first[0] || *at == first[1]) &&
            std::equal(wanted_.begin(), wanted_.end(), at, [](char w, char c) { return w == lower(c); }))
            return true;
    }
    return false;
}

bool TextSearch::isFoundIn(std::string_view text) const {
    if (wanted_.empty())
        return true;
    if (unicode::isAscii(text))
        return isAscii_ ? isFoundInAscii(text) : isTurkic_ && folded(text).find(wanted_) != std::string::npos;
    const std::string haystack = folded(text);
    for (auto at = haystack.find(wanted_); at != std::string::npos; at = haystack.find(wanted_, at + 1)) {
        if (!continuesCharacter(haystack, at + wanted_.size()))
            return true;
    }
    return false;
}

}  // namespace brindle
