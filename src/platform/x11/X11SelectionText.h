#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace brindle {

/// How the bytes of a text target stand for characters.
enum class SelectionEncoding {
    utf8,
    latin1,
    utf8OrLatin1,  ///< Latin-1 when it is not well-formed UTF-8
};

/// The encoding of a text target by its name; none for any other target.
std::optional<SelectionEncoding> selectionEncoding(std::string_view target);

/// Makes well-formed UTF-8 of a text that arrives in pieces, cut anywhere. Each piece is decoded when it comes, so that
/// no step takes longer than its piece.
class SelectionTextDecoder {
public:
    explicit SelectionTextDecoder(SelectionEncoding encoding) : encoding_(encoding) {}

    void append(std::string_view piece);
    [[nodiscard]] std::size_t size() const { return text_.size() + rest_.size(); }  ///< bytes so far

    /// The whole text; the decoder is spent.
    [[nodiscard]] std::string take();

private:
    void makeRoom(std::size_t count);
    void appendUtf8(std::string_view bytes);
    void appendLatin1(std::string_view bytes);
    void turnIntoLatin1();

    SelectionEncoding encoding_;
    std::string text_;
    std::string rest_;  // the start of a character that the next piece completes
};

/// The part of well-formed UTF-8 at `start`, at most `limit` bytes (four or more), that ends where a character ends.
std::string_view wholeCharacters(std::string_view utf8, std::size_t start, std::size_t limit);

/// Well-formed UTF-8 as Latin-1, with a question mark for each character that it lacks.
std::string latin1FromUtf8(std::string_view utf8);

}  // namespace brindle
