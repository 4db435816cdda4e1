#include "views/ColorHelper.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "views/Palette.h"

namespace brindle {

void PrintTo(const Color& color, std::ostream* out) {
    *out << color.red * 255 << ' ' << color.green * 255 << ' ' << color.blue * 255 << ' ' << color.opacity * 255;
}

namespace {

Color bytes(double red, double green, double blue, double opacity = 255) {
    return {red / 255, green / 255, blue / 255, opacity / 255};
}

const Color strange = bytes(1, 1, 0, 1);

TEST(ColorHelper, ReadsHexTextsOfThreeSixAndEightCharacters) {
    const std::pair<std::string, Color> cases[] = {
        {"1E293B", bytes(30, 41, 59)},
        {"#1E293B", bytes(30, 41, 59)},
        {" 3b82f6\n", bytes(59, 130, 246)},
        {"FFF", bytes(255, 255, 255)},
        {"F00", bytes(255, 0, 0)},
        {"80FF0000", bytes(255, 0, 0, 128)},
        // Counted are the characters left after trimming, read are the digits up to the first other character.
        {"XYZ", bytes(0, 0, 0)},
        {"F-0", bytes(0, 0, 255)},
        {"12G456", bytes(0, 0, 0x12)},
        {"0x1234", bytes(0, 0, 0)},
        {"\xC3\xA9"
         "12",
         bytes(0, 0, 0)},
        {"e\xCC\x81"
         "12",
         bytes(0, 0, 14 * 17)},
        {"\xE2\x80\xA6"
         "ABC\xE2\x80\xA6",
         bytes(170, 187, 204)},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(colorFromHex(text), expected) << text;
}

TEST(ColorHelper, GivesAnAlmostTransparentColourForAnyOtherLength) {
    for (const std::string text : {"", "#", "12345", "1234567", "123456789", "112233445566778899AABB"})
        EXPECT_EQ(colorFromHex(text), strange) << text;
}

TEST(Palette, GivesEachRoleItsColourForDarkAndForLight) {
    struct Case {
        Role role;
        QColor dark;
        QColor light;
    };
    const Case cases[] = {
        {Role::surface, 0x1E293B, 0xF1F5F9},      {Role::input, 0x0F172A, Qt::white},
        {Role::primaryText, Qt::white, 0x0F172A}, {Role::secondaryText, 0x94A3B8, 0x64748B},
        {Role::border, 0x475569, 0xCBD5E1},       {Role::control, 0x334155, 0xE2E8F0},
        {Role::selection, 0x3B82F6, 0xE2E8F0},    {Role::accent, 0x3B82F6, 0x3B82F6},
    };
    for (const Case& expected : cases) {
        EXPECT_EQ(color(expected.role, ColorScheme::dark).rgba(), expected.dark.rgba());
        EXPECT_EQ(color(expected.role, ColorScheme::light).rgba(), expected.light.rgba());
    }
    EXPECT_EQ(color(Role::separator, ColorScheme::dark).rgb(), QColor(0x334155).rgb());
    EXPECT_NEAR(color(Role::separator, ColorScheme::dark).alphaF(), 0.5, 1e-4);
    EXPECT_EQ(accentColor().name(), "#3b82f6");
}

}  // namespace

}  // namespace brindle
