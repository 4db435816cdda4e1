#include "platform/qt/Placement.h"

#include <gtest/gtest.h>

namespace brindle {
namespace {

constexpr QSize popover(350, 500);

TEST(Placement, HangsBelowTheAnchorOnItsScreen) {
    struct Case {
        const char* what;
        QRect anchor;
        QRect available;
        QPoint topLeft;
    };
    // A screen of 1280 x 800, with a panel of 28 points where the case has one.
    const Case cases[] = {
        {"centred below an icon in a top panel", {600, 3, 22, 22}, {0, 28, 1280, 772}, {436, 34}},
        {"8 from the right edge", {1250, 3, 22, 22}, {0, 28, 1280, 772}, {922, 34}},
        {"8 from the left edge", {3, 3, 22, 22}, {0, 28, 1280, 772}, {8, 34}},
        {"above an icon in a bottom panel", {1250, 775, 22, 22}, {0, 0, 1280, 772}, {922, 266}},
        {"just enough room below", {600, 264, 22, 0}, {0, 0, 1280, 778}, {436, 270}},
        {"beside a panel on the left", {3, 400, 22, 22}, {28, 0, 1252, 1000}, {36, 428}},
        {"on a second screen", {2500, 3, 22, 22}, {1280, 0, 1280, 800}, {2202, 31}},
        {"a smaller screen keeps the top left", {200, 0, 22, 22}, {100, 50, 320, 400}, {100, 50}},
    };
    for (const auto& each : cases)
        EXPECT_EQ(frameBesideAnchor(each.anchor, popover, each.available), QRect(each.topLeft, popover)) << each.what;
}

}  // namespace
}  // namespace brindle
