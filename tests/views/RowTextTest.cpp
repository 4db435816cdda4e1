#include "views/RowText.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QImage>
#include <QPainter>
#include <string>

#include "views/HistoryItemRow.h"

namespace brindle {

namespace {

constexpr double width = 274;

std::string repeated(const std::string& text, int count) {
    std::string result;
    for (int i = 0; i < count; ++i)
        result += text;
    return result;
}

TEST(RowText, TakesTwoLinesAtMostAndCountsThemWithoutALayoutAlike) {
    const std::pair<std::string, int> cases[] = {
        {"", 1},
        {" \n\t ", 1},
        {"short", 1},
        {"\n\n  after blank lines\n\n", 1},
        {"one\ntwo", 2},
        {"one\r\ntwo", 2},
        {repeated("line\n", 10), 2},
        {std::string(35, 'x'), 1},
        {std::string(36, 'x'), 2},
        {repeated("word ", 7), 1},
        {repeated("word ", 8), 2},
        {std::string(32, 'x') + "\ty", 2},
        {std::string("a\0b\x1b[31m", 8), 1},
        {"\xC3\xA9t\xC3\xA9", 1},
        {repeated("\xC3\xA9", 35), 1},
        {repeated("\xC3\xA9", 36), 2},
        {"\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D", 1},
        {"a\xE2\x80\xA8"
         "b",
         2},
        {"\xF0\x9F\xA5\x97", 1},
        {"\xFF\xFE", 1},
    };
    for (const auto& [text, lines] : cases) {
        EXPECT_EQ(RowText(text, width).lineCount(), lines) << text;
        EXPECT_EQ(RowText::lineCount(text, width), lines) << text;
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

TEST(RowText, EndsACutTextInAnEllipsis) {
    const int word = ink("x\nM").right();
    EXPECT_GT(ink("x\nM\nmore").right(), word + 3);
    EXPECT_EQ(ink("x\nM\n").right(), word);
}

TEST(RowText, IsSpokenOnOneLine) {
    EXPECT_EQ(RowText::spoken(" one\n\ttwo "), "one     two");
}

}  // namespace

}  // namespace brindle
