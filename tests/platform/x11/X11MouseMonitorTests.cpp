#include "platform/x11/X11MouseMonitor.h"

#include <gmock/gmock.h>

#include <QElapsedTimer>
#include <QRasterWindow>

#include "platform/StatusBar.h"
#include "platform/x11/X11TestDesk.h"

namespace brindle::x11test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint64_t bothMasks = leftMouseUpMask | rightMouseUpMask;
constexpr Point onOther{150, 150};
constexpr Point onDock{450, 150};
constexpr Point onOurs{750, 150};
constexpr Point last{199, 199};  // on the other window too; where nothing but the end of a test clicks

class X11MouseMonitorTest : public testing::Test {
protected:
    X11MouseMonitorTest() {
        other_.show();
        dock_.show();
        subscription_ = monitor_.addGlobalMonitor(bothMasks, [this] { note(); });
        EXPECT_TRUE(subscription_);
    }
    void note() { places_.push_back(monitor_.mouseLocation()); }
    void press(Point place, std::uint8_t button = 1) {
        hands_.moveTo(static_cast<int>(place.x), static_cast<int>(place.y));
        hands_.pressButton(button);
        letItBeRead();
    }
    void release(Point place, std::uint8_t button = 1) {
        hands_.moveTo(static_cast<int>(place.x), static_cast<int>(place.y));
        hands_.releaseButton(button);
        letItBeRead();
    }
    void click(Point place, std::uint8_t button = 1) {
        press(place, button);
        release(place, button);
    }
    /// The place is asked for when the event is read.
    static void letItBeRead() {
        await([n = 0]() mutable { return ++n > 2; });
    }
    /// The clicks heard up to now.
    std::vector<Point> heard() {
        click(last);
        EXPECT_TRUE(await([&] { return !places_.empty() && places_.back() == last; }));
        places_.pop_back();
        return std::exchange(places_, {});
    }

    std::unique_ptr<X11Connection> connection_ = X11Connection::open();
    Hands hands_;
    OtherWindow other_{{.isOverrideRedirect = true}};
    OtherWindow dock_{{.types = {"_NET_WM_WINDOW_TYPE_DOCK"}, .isOverrideRedirect = true, .x = 400}};
    bool isIconAnywhere_ = false;
    X11MouseMonitor monitor_{*connection_, [this] { return isIconAnywhere_; }};
    std::vector<Point> places_;
    Subscription subscription_;
};

TEST_F(X11MouseMonitorTest, HearsClicksElsewhereAtThePlaceOfTheRelease) {
    click(onOther);
    click({160, 160}, 3);
    click({170, 170}, 2);
    click({900, 700});  // the bare root
    press(onOther);
    release(onOurs);
    xcb_grab_pointer(other_.connection().get(), 1, other_.id(), XCB_EVENT_MASK_BUTTON_PRESS, XCB_GRAB_MODE_ASYNC,
                     XCB_GRAB_MODE_ASYNC, XCB_WINDOW_NONE, XCB_CURSOR_NONE, XCB_CURRENT_TIME);  // as a menu does
    keysDown(other_.connection());
    click({901, 700});
    EXPECT_THAT(heard(), ElementsAre(onOther, Point{160, 160}, Point{900, 700}, onOurs, Point{901, 700}));
}

TEST_F(X11MouseMonitorTest, LeavesOutWhatIsNotAClickElsewhere) {
    QRasterWindow ours;
    ours.setFlag(Qt::BypassWindowManagerHint);
    ours.setGeometry(700, 100, 100, 100);
    ours.show();
    EXPECT_TRUE(await([&] { return ours.isExposed(); }));
    click(onOurs);
    press(onOurs);
    release(onOther);
    subscription_.reset();
    press(onOther);
    subscription_ = monitor_.addGlobalMonitor(leftMouseUpMask, [this] { note(); });
    release(onOther);
    click(onOther, 3);
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(X11MouseMonitorTest, HoldsAClickOnTheTrayBackUntilTheStatusItemHasHadItsSay) {
    QElapsedTimer clock;
    clock.start();
    click(onDock);
    EXPECT_TRUE(await([&] { return !places_.empty(); }));
    EXPECT_GE(clock.elapsed(), MouseMonitor::statusClickGrace * 1000);
    EXPECT_THAT(std::exchange(places_, {}), ElementsAre(onDock));

    isIconAnywhere_ = true;
    click(onOther);
    monitor_.claimClick();
    isIconAnywhere_ = false;
    click(onDock);
    monitor_.claimClick();
    press(onDock);
    monitor_.claimClick();
    release(onDock);
    clock.restart();
    EXPECT_TRUE(await([&] { return clock.hasExpired(static_cast<qint64>(MouseMonitor::statusClickGrace * 1500)); }));
    EXPECT_THAT(places_, IsEmpty());
}

}  // namespace
}  // namespace brindle::x11test
