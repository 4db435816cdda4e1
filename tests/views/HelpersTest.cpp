#include <QString>
#include <ostream>
#include <string>

#include "support/SimulatedTest.h"
#include "views/ColorHelper.h"
#include "views/Feedback.h"
#include "views/RowText.h"

namespace brindle {

void PrintTo(const Color& color, std::ostream* out) {
    *out << color.red * 255 << ' ' << color.green * 255 << ' ' << color.blue * 255 << ' ' << color.opacity * 255;
}

namespace {

Color bytes(double red, double green, double blue, double opacity = 255) {
    return {red / 255, green / 255, blue / 255, opacity / 255};
}

TEST(ColorHelper, ReadsHexTextsOfThreeSixAndEightCharacters) {
    // Counted are the characters left after trimming, read are the digits up to the first other character.
    const std::pair<std::string, Color> cases[] = {
        {"1E293B", bytes(30, 41, 59)},   {" 3b82f6\n", bytes(59, 130, 246)},
        {"F00", bytes(255, 0, 0)},       {"80FF0000", bytes(255, 0, 0, 128)},
        {"F-0", bytes(0, 0, 255)},       {"12G456", bytes(0, 0, 0x12)},
        {"…ABC…", bytes(170, 187, 204)}, {"", bytes(1, 1, 0, 1)},
        {"12345", bytes(1, 1, 0, 1)},    {"123456789", bytes(1, 1, 0, 1)},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(colorFromHex(text), expected) << text;
}

using FeedbackTest = test::SimulatedTest;

TEST_F(FeedbackTest, HandsAnEscapedMailToTheDesktop) {
    EXPECT_EQ(percentEncodedForQuery("a b\n\xC3\xA9#%<&?"), "a%20b%0A%C3%A9%23%25%3C&?");
    openFeedbackMail();
    EXPECT_THAT(
        sim.journal.take(),
        ::testing::ElementsAre(
            "open mailto:support@brindle.example?subject=Brindle%20Feedback&body=%0A%0A---%0ABrindle:%201.2.3%0A"
            "System:%20Version%2012.4.0%20(Build%20abc)%0ADevice:%20Simulator"));
}

constexpr double width = 274;

std::string repeated(const char* text, int count) {
    return QString(text).repeated(count).toStdString();
}

TEST(RowText, TakesTwoLinesAtMostAndCountsThemWithoutALayoutAlike) {
    const std::string texts[][2] = {
        // of one line, of two
        {"", "one\ntwo"},
        {" \n\t ", "one\r\ntwo"},
        {"short", repeated("line\n", 10)},
        {"\n\n  after blank lines\n\n", std::string(32, 'x') + "\ty"},
        {std::string(35, 'x'), std::string(36, 'x')},
        {repeated("word ", 7), repeated("word ", 8)},
        {repeated("é", 35), repeated("é", 36)},
        {std::string("a\0b\x1b[31m", 8), "a\u2028b"},
        {"\xFF\xFE", "שלום\n\n🥗"},
    };
    for (const auto& pair : texts) {
        for (const int lines : {1, 2}) {
            EXPECT_EQ(RowText(pair[lines - 1], width).lineCount(), lines) << pair[lines - 1];
            EXPECT_EQ(RowText::lineCount(pair[lines - 1], width), lines) << pair[lines - 1];
        }
    }
    EXPECT_EQ(RowText::spoken(" one\n\ttwo "), "one     two");
}

}  // namespace

}  // namespace brindle
