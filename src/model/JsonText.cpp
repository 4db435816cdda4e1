#include "model/JsonText.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif
#include <algorithm>
#include <utility>

#include "base/HugePages.h"

namespace brindle {

namespace {

constexpr std::size_t stepSize = 16;
constexpr std::size_t longestEscape = 6;

/// By character, what stands behind the backslash of its escape; 0 when it needs none.
constexpr auto escapes = [] {
    std::array<char, 256> letters{};
    std::fill_n(letters.begin(), ' ', 'u');
    for (const auto& [character, letter] :
         {std::pair{'\b', 'b'}, {'\t', 't'}, {'\n', 'n'}, {'\f', 'f'}, {'\r', 'r'}, {'"', '"'}, {'\\', '\\'}})
        letters[static_cast<unsigned char>(character)] = letter;
    return letters;
}();

char escapeOf(char character) {
    return escapes[static_cast<unsigned char>(character)];
}

/// Whether a step of the text can stay as it is.
bool isPlain(const char* text) {
#ifdef __SSE2__
    const __m128i step = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
    const __m128i isControl = _mm_cmpeq_epi8(_mm_min_epu8(step, _mm_set1_epi8(' ' - 1)), step);
    const __m128i isQuote = _mm_cmpeq_epi8(step, _mm_set1_epi8('"'));
    const __m128i isBackslash = _mm_cmpeq_epi8(step, _mm_set1_epi8('\\'));
    return _mm_movemask_epi8(_mm_or_si128(isControl, _mm_or_si128(isQuote, isBackslash))) == 0;
#else
    return std::all_of(text, text + stepSize, [](char character) { return escapeOf(character) == 0; });
#endif
}

/// Writes a character as it stands in a string, and returns the end of that.
char* putCharacter(char character, char* out) {
    const char letter = escapeOf(character);
    out[0] = letter != 0 ? '\\' : character;
    out[1] = letter;
    if (letter != 'u')
        return out + (letter != 0 ? 2 : 1);
    constexpr std::string_view digits = "0123456789ABCDEF";
    const auto code = static_cast<unsigned char>(character);
    out[2] = out[3] = '0';
    out[4] = digits[code >> 4U];
    out[5] = digits[code & 0xFU];
    return out + longestEscape;
}

char* putCharacters(const char* text, std::size_t size, char* out) {
    for (const char* const end = text + size; text != end; ++text)
        out = putCharacter(*text, out);
    return out;
}

char* putPiece(std::string_view text, char* out) {
    while (text.size() >= stepSize) {
        if (isPlain(text.data()))
            out = std::copy_n(text.data(), stepSize, out);
        else
            out = putCharacters(text.data(), stepSize, out);
        text.remove_prefix(stepSize);
    }
    return putCharacters(text.data(), text.size(), out);
}

}  // namespace

void JsonText::reserve(std::size_t size) {
    text_.reserve(size);
    adviseHugePages(text_.data(), size);
}

void JsonText::putEscaped(std::string_view text) {
    constexpr std::size_t pieceSize = 1024;
    while (!text.empty()) {
        const auto piece = text.substr(0, pieceSize);
        makeRoom(longestEscape * pieceSize + stepSize);
        used_ = static_cast<std::size_t>(putPiece(piece, buffer_.data() + used_) - buffer_.data());
        text.remove_prefix(piece.size());
    }
}

std::string JsonText::take() {
    empty();
    return std::move(text_);
}

void JsonText::empty() {
    text_.append(buffer_.data(), used_);
    used_ = 0;
}

}  // namespace brindle
