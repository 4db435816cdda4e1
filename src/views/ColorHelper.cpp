#include "views/ColorHelper.h"

#include <QChar>
#include <QList>
#include <QStringView>
#include <QTextBoundaryFinder>
#include <charconv>
#include <cstdint>

#include "platform/qt/QtText.h"

namespace brindle {

namespace {

bool isAlphanumeric(char32_t character) {
    return QChar::isLetterOrNumber(character) || QChar::isMark(character);
}

QString trimmedToAlphanumerics(const QString& text) {
    const auto characters = text.toUcs4();
    qsizetype begin = 0;
    qsizetype end = characters.size();
    while (begin < end && !isAlphanumeric(characters[begin]))
        ++begin;
    while (end > begin && !isAlphanumeric(characters[end - 1]))
        --end;
    return QString::fromUcs4(reinterpret_cast<const char32_t*>(characters.data()) + begin, end - begin);
}

int characterCount(const QString& text) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    int count = 0;
    while (finder.toNextBoundary() != -1)
        ++count;
    return count;
}

std::uint64_t leadingHexadecimal(const std::string& text) {
    std::uint64_t number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number, 16);
    return number;
}

}  // namespace

Color colorFromHex(std::string_view text) {
    const QString trimmed = trimmedToAlphanumerics(toQString(text));
    const std::uint64_t number = leadingHexadecimal(toUtf8(trimmed));
    const auto bits = [number](int shift, std::uint64_t mask) { return static_cast<double>(number >> shift & mask); };
    switch (characterCount(trimmed)) {
        case 3:
            return {bits(8, 0xF) * 17 / 255, bits(4, 0xF) * 17 / 255, bits(0, 0xF) * 17 / 255, 1};
        case 6:
            return {bits(16, 0xFF) / 255, bits(8, 0xFF) / 255, bits(0, 0xFF) / 255, 1};
        case 8:
            return {bits(16, 0xFF) / 255, bits(8, 0xFF) / 255, bits(0, 0xFF) / 255, bits(24, 0xFF) / 255};
        default:
            return {1.0 / 255, 1.0 / 255, 0, 1.0 / 255};
    }
}

}  // namespace brindle
