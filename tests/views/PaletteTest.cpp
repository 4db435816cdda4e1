#include "views/Palette.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace brindle {
namespace {

double luminance(const QColor& color) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor& one, const QColor& other) {
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

constexpr double readable = 4.5;

struct Pair {
    Role text;
    Role ground;
    // What the fixed colours of the theme leave.
    double dark = readable;
    double light = readable;
};

TEST(Palette, KeepsTextReadable) {
    const Pair pairs[] = {
        {Role::primaryText, Role::surface},
        {Role::primaryText, Role::input},
        {Role::primaryText, Role::selection, 3.6},
        {Role::primaryText, Role::selectionHover, 4.2},
        {Role::primaryText, Role::selectionPressed},
        {Role::primaryText, Role::rowHover},
        {Role::primaryText, Role::rowPressed},
        {Role::primaryText, Role::raised},
        {Role::primaryText, Role::raisedControl},
        {Role::primaryText, Role::raisedControlHover},
        {Role::primaryText, Role::raisedControlPressed},
        {Role::primaryText, Role::segmentChosen},
        {Role::primaryText, Role::segmentTrack},
        {Role::segmentText, Role::segmentTrack},
        {Role::secondaryText, Role::surface, readable, 4.3},
        {Role::secondaryText, Role::input},
        {Role::secondaryText, Role::rowHover},
        {Role::secondaryText, Role::rowPressed, 4.4, 3.8},
        {Role::secondaryText, Role::raised},
        {Role::activeText, Role::tabHover},
        {Role::activeText, Role::tabPressed},
        {Role::destructiveText, Role::raised},
        {Role::onAccent, Role::accent, 3.6, 3.6},
        {Role::onAccent, Role::accentHover},
        {Role::onAccent, Role::accentPressed},
        {Role::onAccent, Role::danger},
        {Role::onAccent, Role::dangerHover},
        {Role::onAccent, Role::dangerPressed},
    };
    for (const Pair& pair : pairs) {
        for (const auto scheme : {ColorScheme::dark, ColorScheme::light})
            EXPECT_GE(contrast(color(pair.text, scheme), color(pair.ground, scheme)),
                      scheme == ColorScheme::dark ? pair.dark : pair.light)
                << static_cast<int>(pair.text) << " on " << static_cast<int>(pair.ground) << ", "
                << (scheme == ColorScheme::dark ? "dark" : "light");
    }
}

}  // namespace
}  // namespace brindle
