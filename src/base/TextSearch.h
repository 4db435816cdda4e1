#pragma once

#include <string>
#include <string_view>

namespace brindle {

/// Finds one text in many, whatever the letter case (by the rules of the user's locale) and whichever way accents are
/// encoded: a decomposed é is found by a composed one. A match ends where a character ends: "e" is not found in "é".
class TextSearch {
public:
    /// `wanted` is taken as it is, spaces included. The empty text is found everywhere.
    explicit TextSearch(std::string_view wanted);

    [[nodiscard]] bool isFoundIn(std::string_view text) const;

private:
    [[nodiscard]] std::string folded(std::string_view text) const;
    /// Of an ASCII text: found letter by letter, without folding what it is looked for in.
    [[nodiscard]] bool isFoundAsItStands(std::string_view text) const;

    bool isTurkic_;
    bool isAscii_;
    std::string wanted_;  // folded
};

}  // namespace brindle
