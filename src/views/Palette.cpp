#include "views/Palette.h"

#include <array>
#include <cstddef>
#include <string_view>

#include "views/ColorHelper.h"

namespace brindle {

namespace {

struct Swatch {
    std::string_view hex;
    double opacity = 1;
};

struct Entry {
    Role role;
    Swatch dark;
    Swatch light;
};

constexpr std::string_view white = "FFFFFF";

constexpr auto roleCount = static_cast<std::size_t>(Role::count);

constexpr std::array<Entry, roleCount> palette = {{
    {Role::surface, {"1E293B"}, {"F1F5F9"}},
    {Role::input, {"0F172A"}, {white}},
    {Role::primaryText, {white}, {"0F172A"}},
    {Role::secondaryText, {"94A3B8"}, {"64748B"}},
    {Role::border, {"475569"}, {"CBD5E1"}},
    {Role::separator, {"334155", 0.5}, {"E2E8F0", 0.5}},
    {Role::control, {"334155"}, {"E2E8F0"}},
    {Role::selection, {"3B82F6"}, {"E2E8F0"}},
    {Role::accent, {"3B82F6"}, {"3B82F6"}},

    {Role::accentHover, {"2563EB"}, {"2563EB"}},
    {Role::accentPressed, {"1D4ED8"}, {"1D4ED8"}},
    {Role::danger, {"DC2626"}, {"DC2626"}},
    {Role::dangerHover, {"B91C1C"}, {"B91C1C"}},
    {Role::dangerPressed, {"991B1B"}, {"991B1B"}},
    {Role::onAccent, {white}, {white}},
    {Role::rowHover, {"253247"}, {"FCFDFE"}},
    {Role::rowPressed, {"2D3B50"}, {"E2E8F0"}},
    {Role::tabHover, {"2B394E"}, {"E8EDF4"}},
    {Role::tabPressed, {"334155"}, {"DDE5EE"}},
    {Role::activeText, {"CBD5E1"}, {"334155"}},
    {Role::selectionHover, {"2F76EC"}, {"D7DFEA"}},
    {Role::selectionPressed, {"2563EB"}, {"CBD5E1"}},
    {Role::controlHover, {"3D4B60"}, {"D7DFEA"}},
    {Role::controlPressed, {"475569"}, {"CBD5E1"}},
    {Role::raisedControl, {"3D4B60"}, {"E2E8F0"}},
    {Role::raisedControlHover, {"475569"}, {"D7DFEA"}},
    {Role::raisedControlPressed, {"334155"}, {"CBD5E1"}},
    {Role::inputHover, {"5B6B82"}, {"94A3B8"}},
    {Role::focusRing, {"60A5FA"}, {"2563EB"}},
    {Role::focusRingOnSelection, {white}, {"2563EB"}},
    {Role::focusGlow, {"3B82F6", 0.35}, {"3B82F6", 0.35}},
    {Role::pin, {"EF4444"}, {"DC2626"}},
    {Role::raised, {"273449"}, {white}},
    {Role::raisedBorder, {"475569"}, {"CBD5E1"}},
    {Role::destructiveText, {"F87171"}, {"DC2626"}},
    {Role::segmentTrack, {"0F172A"}, {"E2E8F0"}},
    {Role::segmentChosen, {"475569"}, {white}},
    {Role::segmentText, {"CBD5E1"}, {"475569"}},
    {Role::switchOff, {"475569"}, {"CBD5E1"}},
    {Role::scrollThumb, {"94A3B8", 0.45}, {"64748B", 0.40}},
    {Role::scrollThumbHover, {"94A3B8", 0.70}, {"64748B", 0.65}},
    {Role::rule, {"334155"}, {"CBD5E1"}},
    {Role::dim, {"000000", 0.3}, {"000000", 0.3}},
}};

constexpr bool isInOrderOfRoles() {
    for (std::size_t i = 0; i < roleCount; ++i) {
        if (palette[i].role != static_cast<Role>(i))
            return false;
    }
    return true;
}
static_assert(isInOrderOfRoles());

QColor paint(Swatch swatch) {
    const Color mixed = colorFromHex(swatch.hex);
    return QColor::fromRgbF(static_cast<float>(mixed.red), static_cast<float>(mixed.green),
                            static_cast<float>(mixed.blue), static_cast<float>(mixed.opacity * swatch.opacity));
}

struct Pair {
    QColor dark;
    QColor light;
};

std::array<Pair, roleCount> mixAll() {
    std::array<Pair, roleCount> mixed;
    for (std::size_t i = 0; i < roleCount; ++i)
        mixed[i] = {paint(palette[i].dark), paint(palette[i].light)};
    return mixed;
}

}  // namespace

QColor color(Role role, ColorScheme scheme) {
    static const auto mixed = mixAll();
    const Pair& pair = mixed[static_cast<std::size_t>(role)];
    return scheme == ColorScheme::dark ? pair.dark : pair.light;
}

QColor accentColor() {
    return color(Role::accent, ColorScheme::dark);
}

}  // namespace brindle
