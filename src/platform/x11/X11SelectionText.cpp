#include "platform/x11/X11SelectionText.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "base/Unicode.h"

namespace brindle {

namespace {

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

std::size_t characterLength(char lead) {
    const auto byte = static_cast<unsigned char>(lead);
    if (byte >= 0xF0)
        return 4;
    if (byte >= 0xE0)
        return 3;
    return byte >= 0xC0 ? 2 : 1;
}

/// Where the last character starts when bytes of it seem to be missing, else the end.
std::size_t completeLength(std::string_view bytes) {
    std::size_t start = bytes.size();
    while (start > 0 && bytes.size() - start < 3 && isContinuation(bytes[start - 1]))
        --start;
    if (start == 0)
        return bytes.size();
    --start;
    return start + characterLength(bytes[start]) > bytes.size() ? start : bytes.size();
}

void appendLatin1Character(std::string& text, unsigned char character) {
    if (character < 0x80) {
        text += static_cast<char>(character);
    } else {
        text += static_cast<char>(0xC0U | (character >> 6U));
        text += static_cast<char>(0x80U | (character & 0x3FU));
    }
}

}  // namespace

std::optional<SelectionEncoding> selectionEncoding(std::string_view target) {
    if (target == "UTF8_STRING" || target == "text/plain;charset=utf-8")
        return SelectionEncoding::utf8;
    if (target == "STRING")
        return SelectionEncoding::latin1;
    if (target == "text/plain")
        return SelectionEncoding::utf8OrLatin1;
    return std::nullopt;
}

/// A long text would be copied at each doubling, for 50 ms in the end. Room that is never touched costs addresses only.
void SelectionTextDecoder::makeRoom(std::size_t count) {
    constexpr std::size_t longText = std::size_t{8} << 20U;  // bytes: a few milliseconds of copying
    constexpr std::size_t growth = 8;
    constexpr std::size_t mostAhead = std::size_t{256} << 20U;
    const std::size_t wanted = text_.size() + count;
    if (wanted > text_.capacity() && wanted > longText)
        text_.reserve(std::min(wanted * growth, wanted + mostAhead));
}

void SelectionTextDecoder::append(std::string_view piece) {
    makeRoom(piece.size());
    if (encoding_ == SelectionEncoding::latin1) {
        appendLatin1(std::exchange(rest_, {}));  // kept before the text turned out to be Latin-1
        appendLatin1(piece);
        return;
    }
    if (rest_.empty()) {
        const auto complete = completeLength(piece);
        appendUtf8(piece.substr(0, complete));
        rest_ += piece.substr(complete);
        return;
    }
    const std::string joined = std::exchange(rest_, {}) + std::string(piece);
    append(joined);
}

std::string SelectionTextDecoder::take() {
    appendUtf8(std::exchange(rest_, {}));
    return std::move(text_);
}

void SelectionTextDecoder::appendUtf8(std::string_view bytes) {
    if (encoding_ == SelectionEncoding::utf8OrLatin1 && !unicode::isWellFormed(bytes))
        turnIntoLatin1();
    if (encoding_ == SelectionEncoding::latin1)
        appendLatin1(bytes);
    else if (encoding_ == SelectionEncoding::utf8OrLatin1 || unicode::isWellFormed(bytes))
        text_ += bytes;
    else
        text_ += unicode::repaired(std::string(bytes));
}

void SelectionTextDecoder::appendLatin1(std::string_view bytes) {
    for (const char byte : bytes)
        appendLatin1Character(text_, static_cast<unsigned char>(byte));
}

void SelectionTextDecoder::turnIntoLatin1() {
    encoding_ = SelectionEncoding::latin1;
    appendLatin1(std::exchange(text_, {}));  // so far it was well-formed and therefore is the bytes that came
}

std::string_view wholeCharacters(std::string_view utf8, std::size_t start, std::size_t limit) {
    std::size_t end = std::min(utf8.size(), start + limit);
    while (end < utf8.size() && isContinuation(utf8[end]))
        --end;
    return utf8.substr(start, end - start);
}

std::string latin1FromUtf8(std::string_view utf8) {
    std::string latin1;
    latin1.reserve(utf8.size());
    for (std::size_t at = 0; at < utf8.size(); at += characterLength(utf8[at])) {
        const auto lead = static_cast<unsigned char>(utf8[at]);
        if (lead < 0x80)
            latin1 += utf8[at];
        else if (lead == 0xC2 || lead == 0xC3)
            latin1 += static_cast<char>(((lead & 0x03U) << 6U) | (static_cast<unsigned char>(utf8[at + 1]) & 0x3FU));
        else
            latin1 += '?';
    }
    return latin1;
}

}  // namespace brindle
