#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// What the program asks of Unicode. Texts are UTF-8; the tables and algorithms are ICU's.
namespace brindle::unicode {

/// The same text with each maximal ill-formed piece replaced by U+FFFD (Unicode 15, 3.9, "best practice").
std::string repaired(std::string text);

bool isWellFormed(std::string_view text);

bool isAscii(std::string_view text);

/// Where the ASCII at `start` ends, give or take seven characters: most texts are nothing else, and many at a time are
/// many times faster.
std::size_t asciiEnd(std::string_view text, std::size_t start);

/// Whether the text is known to be in Normalization Form C; a doubtful one counts as not. One with more than 256 bytes
/// of combining marks in a row counts as composed, because nobody could wait for its composition.
bool isComposed(std::string_view text);

/// The text in Normalization Form C. Ill-formed pieces become U+FFFD.
std::string composed(std::string_view text);

/// The part of the text between its first and last character that is neither white space nor a line break.
std::string_view trimmed(std::string_view text);

}  // namespace brindle::unicode
