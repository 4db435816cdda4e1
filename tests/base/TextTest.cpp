#include <gmock/gmock.h>
#include <unicode/locid.h>

#include <string>
#include <string_view>

#include "base/SharedText.h"
#include "base/TextSearch.h"
#include "base/Unicode.h"
#include "base/Uuid.h"

namespace brindle {
namespace {

constexpr auto replacement = "\xEF\xBF\xBD";

struct Search {
    std::string_view wanted;
    std::string_view text;
    bool isFound;
};

void expectAll(const char* language, std::initializer_list<Search> searches) {
    UErrorCode status = U_ZERO_ERROR;
    icu::Locale::setDefault(icu::Locale(language), status);
    for (const Search& search : searches)
        EXPECT_EQ(TextSearch(search.wanted).isFoundIn(search.text), search.isFound)
            << language << ": " << search.wanted << " in " << search.text;
}

TEST(TextSearchTest, IgnoresCaseAndTheEncodingOfAccentsButNotTheAccents) {
    expectAll("en", {{"", "any", true},
                     {"abc", "xABCx", true},
                     {"é", "CAFE\u0301", true},
                     {"e\u0301", "CAFÉ", true},
                     {"e", "cafe\u0301", false},
                     {"e", "été de", true},
                     {"straße", "STRASSE", true},
                     {"ΣΊΣΥΦΟΣ", "σίσυφος", true},
                     {"и", "й", false},
                     {"fin", "ﬁn", true},
                     {"long", "Everything before is more than a block; only then comes what is loNG, café", true},
                     {"long", "Everything before is more than a block; only then comes what is lon, café", false},
                     {"\xC3", "a", false},
                     {"a", "\xE2\x82", false}});
}

TEST(TextSearchTest, FollowsTheLettersOfTurkish) {
    expectAll("tr", {{"I", "ılık", true},
                     {"I", "istanbul", false},
                     {"istanbul", "İSTANBUL", true},
                     {"istanbul", "ISTANBUL", false}});
}

TEST(UnicodeTest, IllFormedPiecesAreReplacedOneByOne) {
    const struct {
        std::string_view text;
        std::string repaired;
    } rows[] = {
        {"plain", "plain"},
        {"longer than a block é", "longer than a block é"},
        {"\xE2\x82", replacement},                                               // cut off
        {"\xC0\xAF", std::string(replacement) + replacement},                    // overlong
        {"\xED\xA0\x80", std::string(replacement) + replacement + replacement},  // half a surrogate pair
        {"\xF4\x90\x80\x80", std::string(replacement) + replacement + replacement + replacement},  // above U+10FFFF
        {std::string_view("a\0b", 3), std::string("a\0b", 3)},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(unicode::repaired(std::string(row.text)), row.repaired);
        EXPECT_EQ(unicode::isWellFormed(row.text), row.text == row.repaired) << row.repaired;
        EXPECT_TRUE(unicode::isWellFormed(row.repaired));
    }
}

TEST(UnicodeTest, TrimmingTakesWhiteSpaceFromBothEndsOnly) {
    EXPECT_EQ(unicode::trimmed(" \t\r\n a\u00A0b \u3000\u2028\u0085"), "a\u00A0b");
    EXPECT_EQ(unicode::trimmed(" \x80 "), "\x80");
}

TEST(SharedTextTest, CanonicalEqualityIsOfTextAndPlainEqualityOfBytes) {
    const struct {
        std::string_view left;
        std::string_view right;
        bool isEqual;
    } rows[] = {
        {"é", "e\u0301", true}, {"q\u0307\u0323", "q\u0323\u0307", true},
        {"Å", "\u212B", true},  {"가", "\u1100\u1161", true},
        {"é", "e", false},      {"a", "A", false},
    };
    for (const auto& row : rows) {
        const SharedText left(row.left);
        const SharedText right(row.right);
        EXPECT_EQ(left.isCanonicallyEqual(right), row.isEqual) << row.left << " " << row.right;
        EXPECT_EQ(right.isCanonicallyEqual(left), row.isEqual) << row.left << " " << row.right;
        EXPECT_EQ(left == right, row.left == row.right);
    }
    std::string marks = "e";
    while (marks.size() < 2'000'000)
        marks += "\u0301\u0323";
    EXPECT_FALSE(SharedText(marks + "a").isCanonicallyEqual(SharedText(marks + "b"))) << "and within this century";
}

TEST(UuidTest, ReadsTheCanonicalFormOnly) {
    for (const char* bad :
         {"", "0123ABCD", "0123ABCD89EF-4000-8000-0123456789ABC", "{123ABCD-89EF-4000-8000-0123456789A}",
          "0123ABCG-89EF-4000-8000-0123456789AB", "0123ABCD-89EF-4000-8000-0123456789AB "})
        EXPECT_FALSE(Uuid::parse(bad)) << bad;
}

}  // namespace
}  // namespace brindle
