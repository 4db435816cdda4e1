#include "platform/x11/X11MouseMonitor.h"

#include <gmock/gmock.h>

#include <QRasterWindow>

#include "platform/StatusBar.h"
#include "platform/x11/X11TestDesk.h"

namespace brindle::x11test {
namespace {

TEST(X11MouseMonitorTest, HearsClicksElsewhereAtThePlaceOfTheRelease) {
    constexpr QPoint onOther(150, 150);
    constexpr QPoint onOurs(750, 150);
    constexpr QPoint onRoot(901, 700);
    OtherWindow other({.isOverrideRedirect = true});
    other.show();
    QRasterWindow ours;
    ours.setFlag(Qt::BypassWindowManagerHint);
    ours.setGeometry(700, 100, 100, 100);
    ours.show();
    EXPECT_TRUE(await([&] { return ours.isExposed(); }));

    const auto connection = X11Connection::open();
    X11MouseMonitor monitor(*connection, [] { return false; });
    std::vector<Point> places;
    const auto subscription = monitor.addGlobalMonitor(leftMouseUpMask | rightMouseUpMask,
                                                       [&] { places.push_back(monitor.mouseLocation()); });
    Hands hands;
    // The place is asked for when the event is read.
    const auto letItBeRead = [] { await([n = 0]() mutable { return ++n > 2; }); };
    const auto click = [&](QPoint pressed, QPoint released, std::uint8_t button = 1) {
        hands.moveTo(pressed.x(), pressed.y());
        hands.pressButton(button);
        letItBeRead();
        hands.moveTo(released.x(), released.y());
        hands.releaseButton(button);
        letItBeRead();
    };
    click(onOurs, onOurs);
    click(onOurs, onOther);
    click(onOther, onOther, 2);
    click(onOther, onOther);
    click(onOther, onOurs, 3);
    xcb_grab_pointer(other.connection().get(), 1, other.id(), XCB_EVENT_MASK_BUTTON_PRESS, XCB_GRAB_MODE_ASYNC,
                     XCB_GRAB_MODE_ASYNC, XCB_WINDOW_NONE, XCB_CURSOR_NONE, XCB_CURRENT_TIME);  // as a menu does
    keysDown(other.connection());
    click(onRoot, onRoot);
    EXPECT_TRUE(await([&] { return places.size() >= 3; }));
    EXPECT_THAT(places, testing::ElementsAre(Point{150, 150}, Point{750, 150}, Point{901, 700}));
}

}  // namespace
}  // namespace brindle::x11test
