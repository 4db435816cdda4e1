#include <QElapsedTimer>
#include <QImage>
#include <QPainter>
#include <ostream>
#include <string>

#include "support/SimulatedTest.h"
#include "views/ColorHelper.h"
#include "views/Feedback.h"
#include "views/HistoryItemRow.h"
#include "views/IcnsFile.h"
#include "views/Palette.h"
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
        {"1E293B", bytes(30, 41, 59)},
        {"#1E293B", bytes(30, 41, 59)},
        {" 3b82f6\n", bytes(59, 130, 246)},
        {"FFF", bytes(255, 255, 255)},
        {"F00", bytes(255, 0, 0)},
        {"80FF0000", bytes(255, 0, 0, 128)},
        {"XYZ", bytes(0, 0, 0)},
        {"F-0", bytes(0, 0, 255)},
        {"12G456", bytes(0, 0, 0x12)},
        {"0x1234", bytes(0, 0, 0)},
        {"é12", bytes(0, 0, 0)},
        {"e\u030112", bytes(0, 0, 14 * 17)},
        {"…ABC…", bytes(170, 187, 204)},
        {"", bytes(1, 1, 0, 1)},
        {"#", bytes(1, 1, 0, 1)},
        {"12345", bytes(1, 1, 0, 1)},
        {"1234567", bytes(1, 1, 0, 1)},
        {"123456789", bytes(1, 1, 0, 1)},
        {"112233445566778899AABB", bytes(1, 1, 0, 1)},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(colorFromHex(text), expected) << text;
}

TEST(Palette, HasSeparatorsAtHalfOpacity) {
    const QColor separator = color(Role::separator, ColorScheme::dark);
    EXPECT_EQ(separator.rgb(), QColor(0x334155).rgb());
    EXPECT_NEAR(separator.alphaF(), 0.5, 1e-4);
}

using FeedbackTest = test::SimulatedTest;

TEST_F(FeedbackTest, EscapesWhatAQueryMayNotHold) {
    EXPECT_EQ(percentEncodedForQuery("a b\n\xC3\xA9#%\"<>[]^`{|}\\"),
              "a%20b%0A%C3%A9%23%25%22%3C%3E%5B%5D%5E%60%7B%7C%7D%5C");
    EXPECT_EQ(percentEncodedForQuery("AZaz09-._~!$&'()*+,;=:@/?"), "AZaz09-._~!$&'()*+,;=:@/?");
}

TEST_F(FeedbackTest, HandsTheMailToTheDesktop) {
    openFeedbackMail();
    EXPECT_THAT(
        sim.journal.take(),
        ::testing::ElementsAre(
            "open mailto:support@brindle.example?subject=Brindle%20Feedback&body=%0A%0A---%0ABrindle:%201.2.3%0A"
            "System:%20Version%2012.4.0%20(Build%20abc)%0ADevice:%20Simulator"));
    sim.package.info.clear();
    EXPECT_EQ(appVersion(), "1.0");
}

std::string number(std::size_t value) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes += static_cast<char>(value >> static_cast<unsigned>(shift));
    return bytes;
}

std::string member(const std::string& type, const std::string& content) {
    return type + number(content.size() + 8) + content;
}

std::string png(std::size_t width) {
    return std::string("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16) + number(width) + number(width) + "rest";
}

TEST(IcnsFile, GivesTheLargestPictureWhateverTheOrderIfAny) {
    const auto file = member("icns", member("ic11", png(32)) + member("ic09", png(512)) + member("ic08", png(256)));
    EXPECT_EQ(largestPng(file), png(512));
    for (const auto& none : {std::string(), png(512), member("icns", member("is32", "runs of bytes, no picture"))})
        EXPECT_EQ(largestPng(none), std::nullopt);
}

TEST(IcnsFile, TakesNoLengthOnTrust) {
    const auto file = member("icns", member("ic07", png(128)) + member("ic08", png(256)));
    for (std::size_t size = 0; size < file.size(); ++size)
        EXPECT_NE(largestPng(std::string(file, 0, size)), png(256)) << size;
    for (const std::size_t length : {0U, 7U, 0xFFFFFFFFU})
        EXPECT_EQ(largestPng(member("icns", "ic07" + number(length) + png(128))), std::nullopt) << length;
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
    EXPECT_EQ(HistoryItemRow::height(1), 57);
    EXPECT_EQ(HistoryItemRow::height(2), 73);
}

TEST(RowText, LaysOutTheBeginningOfALongTextOnly) {
    const std::string texts[] = {std::string(64 << 20, 'x'), repeated("\xF0\x9F\x91\x8B", 1 << 20)};
    QElapsedTimer watch;
    watch.start();
    for (const std::string& text : texts)
        EXPECT_EQ(RowText(text, width).lineCount(), 2);
    EXPECT_LT(watch.elapsed(), 1000);
}

/// The columns of the picture that a text leaves ink in.
QRect ink(const std::string& text) {
    QImage picture(300, 40, QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.setPen(Qt::black);
    RowText(text, width).draw(painter, {0, 0});
    painter.end();
    QRect inked;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.pixelColor(x, y).lightness() < 128)
                inked |= QRect(x, y, 1, 1);
        }
    }
    return inked;
}

TEST(RowText, BeginsAtTheLeftWhateverItsDirectionAndStaysInItsColumn) {
    for (const std::string text : {"left", "\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D", "<b>bold</b>"}) {
        EXPECT_LT(ink(text).left(), 4) << text;
        EXPECT_LT(ink(text).right(), 150) << text;
    }
    EXPECT_LE(ink(std::string(1000, 'M')).right(), 274);
    EXPECT_LT(ink(repeated("M\n", 9)).bottom(), 32);
}

TEST(RowText, EndsACutTextInAnEllipsisAndIsSpokenOnOneLine) {
    const int word = ink("x\nM").right();
    EXPECT_GT(ink("x\nM\nmore").right(), word + 3);
    EXPECT_EQ(ink("x\nM\n").right(), word);
    EXPECT_EQ(RowText::spoken(" one\n\ttwo "), "one     two");
}

}  // namespace

}  // namespace brindle
