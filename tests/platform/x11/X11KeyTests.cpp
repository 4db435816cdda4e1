#include <gmock/gmock.h>
#include <xcb/xinput.h>

#include <QElapsedTimer>
#include <array>

#include "platform/x11/X11EventTaps.h"
#include "platform/x11/X11HotKeys.h"
#include "platform/x11/X11KeyEvents.h"
#include "platform/x11/X11KeyStates.h"
#include "platform/x11/X11TestDesk.h"

namespace brindle::x11test {
namespace {

using testing::ElementsAre;

constexpr unsigned shift = XCB_MOD_MASK_SHIFT;
constexpr unsigned control = XCB_MOD_MASK_CONTROL;
constexpr unsigned superMask = XCB_MOD_MASK_4;
constexpr std::uint32_t popoverModifiers = hotKeyModifiers::command | hotKeyModifiers::shift;
constexpr auto vCode = static_cast<std::uint32_t>(VirtualKey::v);
constexpr TapRequest cycling{.key = VirtualKey::v, .flags = eventFlags::control | eventFlags::command};

class X11KeyTest : public testing::Test {
protected:
    X11KeyTest() {
        target_.show();
        target_.focus();
    }
    ~X11KeyTest() override { EXPECT_EQ(X11KeyStates::read(*connection_).synthetic.count(), 0U); }

    void paste() {
        const auto source = keyEvents_.createSource(EventSourceState::hidSystem);
        for (const auto& [key, direction] : {std::pair{VirtualKey::command, KeyDirection::down},
                                             {VirtualKey::v, KeyDirection::down},
                                             {VirtualKey::v, KeyDirection::up},
                                             {VirtualKey::command, KeyDirection::up}}) {
            const auto event = keyEvents_.createKeyEvent(*source, key, direction);
            event->setFlags(eventFlags::command);
            keyEvents_.post(EventTapLocation::hid, *event);
        }
    }
    /// The chord's keys as the target saw them since the last look.
    std::vector<OtherWindow::Key> seen(xcb_keycode_t key = keyV) {
        keysDown(target_.connection());
        EXPECT_TRUE(await([&] { return !target_.presses(key).empty(); }));
        auto found = target_.presses(key);
        target_.forgetKeys();
        return found;
    }

    std::int32_t registerHotKey() { return hotKeys_.registerHotKey(vCode, popoverModifiers, {0x11223344, 1}, hotKey_); }
    /// A tap for cycling that counts its presses.
    std::unique_ptr<EventTap> tap(std::function<void()> step = [] {}) {
        return taps_.create(cycling, [this, step](const TappedKey& key) {
            EXPECT_EQ(key.flags, cycling.flags);
            ++tapped_;
            step();
            return TapVerdict::remove;
        });
    }
    void awaitNoKeyDown() {
        EXPECT_TRUE(await([&] { return X11KeyStates::read(*connection_).synthetic.none(); }));
        EXPECT_EQ(keysDown(*connection_).count(), 0U);
    }

    Hands hands_;
    OtherWindow target_;
    std::unique_ptr<X11Connection> connection_ = X11Connection::open();
    X11Keyboard keyboard_{*connection_};
    X11KeyEvents keyEvents_{*connection_, keyboard_, {[] {}, [] {}}};
    X11HotKeys hotKeys_{*connection_, keyboard_};
    HotKeyRef hotKey_ = 7;
    int fired_ = 0;
    EventHandlerRef handler_ = hotKeys_.installEventHandler({0x6B657962, 5}, [this] { ++fired_; });
    X11EventTaps taps_{*connection_, keyboard_};
    int tapped_ = 0;
};

TEST_F(X11KeyTest, HotKeyFiresOncePerPressWhateverTheLocks) {
    ASSERT_EQ(registerHotKey(), noError);
    for (int i = 1; i <= 3; ++i) {
        hands_.chord({keySuperLeft, keyShiftRight, keyV});
        EXPECT_TRUE(await([&] { return fired_ == i; }));
        hands_.tap(i == 1 ? keyCapsLock : keyNumLock);
        await([n = 0]() mutable { return ++n > 2; });  // a press in the millisecond of the release is a repeat
    }
    hands_.tap(keyCapsLock);
    hands_.chord({keySuperLeft, keyShiftLeft, keyControlLeft, keyV});
    EXPECT_THAT(seen(), ElementsAre(OtherWindow::Key{true, keyV, shift | control | superMask}));
    hotKeys_.unregisterHotKey(hotKey_);
    hands_.chord({keySuperLeft, keyShiftLeft, keyV});
    EXPECT_EQ(seen().size(), 1U);
    EXPECT_EQ(fired_, 3);
}

TEST_F(X11KeyTest, TapTakesTheCombinationWithAnyOtherModifier) {
    const auto taken = tap();
    for (const auto& others :
         std::vector<std::vector<xcb_keycode_t>>{{}, {keyShiftLeft}, {keyShiftRight, keyAltLeft}, {keyNumLock}}) {
        tapped_ = 0;
        std::vector<xcb_keycode_t> keys = others;
        keys.insert(keys.end(), {keyControlRight, keySuperLeft, keyV});
        hands_.chord(keys);
        EXPECT_TRUE(await([&] { return tapped_ == 1; })) << tapped_;
    }
    hands_.tap(keyNumLock);
    EXPECT_TRUE(target_.presses(keyV).empty());
    hands_.chord({keySuperLeft, keyV});
    hands_.chord({keyControlLeft, keyV});
    EXPECT_TRUE(await([&] { return target_.presses(keyV).size() == 2; }));
}

TEST_F(X11KeyTest, AKeyThatStaysDownRepeatsInItsRhythmWhateverIsPastedMeanwhile) {
    int pastes = 0;
    const auto taken = tap([&] {
        if (pastes-- > 0)
            QTimer::singleShot(1, [this] { paste(); });
    });
    const struct {
        int pastes;
        const char* windowClass;
        OtherWindow::Key chord;
    } rows[] = {{0, "any", {}}, {3, "any", {true, keyV, control}}, {3, "XTerm", {true, 118, shift}}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.windowClass);
        OtherWindow window({.windowClass = row.windowClass});
        window.show();
        window.focus();
        tapped_ = 0;
        pastes = row.pastes;
        QElapsedTimer clock;
        clock.start();
        hands_.press({keyControlLeft, keySuperLeft, keyV});
        EXPECT_TRUE(await([&] { return tapped_ == 2; }));
        EXPECT_GE(clock.restart(), 600);  // of the server's 660 ms
        EXPECT_TRUE(await([&] { return tapped_ == 7; }));
        EXPECT_GE(clock.elapsed(), 150);  // of five times 40 ms
        hands_.release(keyV);
        hands_.press(keyA);
        EXPECT_TRUE(await([&] { return window.presses(keyA).size() > 2; }));
        EXPECT_LE(tapped_, 8);
        auto keys = window.keys();
        std::erase_if(keys, [](const auto& key) { return key.key != keyV && key.key != 118; });
        EXPECT_EQ(std::ranges::count(keys, row.chord), row.pastes);
        EXPECT_EQ(keys.size(), 2U * static_cast<unsigned>(row.pastes)) << "no stray press or release";
        hands_.release({keyA, keySuperLeft, keyControlLeft});
        awaitNoKeyDown();
    }
}

TEST_F(X11KeyTest, LayoutsMoveTheKey) {
    const auto taken = tap();
    const std::pair<const char*, xcb_keycode_t> layouts[] = {{"us(dvorak)", keyDvorakV},
                                                             {"ru", keyV},
                                                             {"us(dvorak),ru", keyDvorakV},
                                                             {"ru,us(dvorak)", keyDvorakV},
                                                             {"us", keyV}};
    for (const auto& [layout, key] : layouts) {
        SCOPED_TRACE(layout);
        setLayout(layout);
        EXPECT_TRUE(await([&] { return keyboard_.vKey() == key; }));
        tapped_ = 0;
        hands_.chord({keyControlLeft, keySuperLeft, key});
        EXPECT_TRUE(await([&] { return tapped_ == 1; }));
        target_.forgetKeys();
        paste();
        EXPECT_THAT(seen(key), ElementsAre(OtherWindow::Key{true, key, control}));
    }
}

TEST_F(X11KeyTest, SwitchingBetweenLayoutsMovesTheKeyOfFingersAndTheChordStaysReadable) {
    setLayout("us,us(dvorak)");
    const std::array places{keyV, keyDvorakV};
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_TRUE(await([&] { return keyboard_.vKey() == places[i % 2]; }));
        target_.forgetKeys();
        paste();
        keysDown(target_.connection());
        EXPECT_TRUE(await([&] { return !target_.keys().empty() && !target_.keys().back().isPress; }));
        const auto layout = target_.keys().back().layout;
        EXPECT_THAT(target_.presses(places[layout]),
                    ElementsAre(OtherWindow::Key{true, places[layout], control, layout}));
        hands_.tap(keyCapsLock);
    }
    setLayout("us");
}

TEST_F(X11KeyTest, AKeyboardWithALayoutOfItsOwnKeepsItsCombinationAndTheChordItsKeys) {
    const auto taken = tap();
    const auto setOwnLayout = [&](const char* layout) {
        QProcess::execute("setxkbmap", {"-device", QString::number(hands_.keyboard()), "-layout", layout});
    };
    setOwnLayout("us(dvorak)");
    for (int i = 1; i <= 2; ++i) {
        hands_.press(keyControlLeft);  // the core keyboard takes the layout over
        EXPECT_TRUE(await([&] { return keyboard_.vKey() == keyDvorakV; }));
        hands_.press(keySuperLeft);
        hands_.tap(keyDvorakV);
        EXPECT_TRUE(await([&] { return tapped_ == i; }));
        paste();
        EXPECT_THAT(seen(), ElementsAre(OtherWindow::Key{true, keyV, control}));
        hands_.release({keySuperLeft, keyControlLeft});
        awaitNoKeyDown();
    }
    setOwnLayout("us");
}

TEST_F(X11KeyTest, PastesOnceWhateverFingersHold) {
    for (const auto& held :
         std::vector<std::vector<xcb_keycode_t>>{{},
                                                 {keyControlLeft},
                                                 {keyShiftLeft, keySuperLeft},
                                                 {keyControlLeft, keySuperLeft, keyV},
                                                 {keyAltLeft, keyShiftRight, keyControlRight, keySuperLeft, keyV}}) {
        hands_.press(held);
        if (!held.empty())
            seen(held.back());
        for (int i = 0; i < 5; ++i) {
            paste();
            EXPECT_THAT(seen(), ElementsAre(OtherWindow::Key{true, keyV, control}));
            EXPECT_EQ(X11KeyStates::read(*connection_).fingers, hands_.held());
        }
        hands_.release(held);
        awaitNoKeyDown();
    }
}

TEST_F(X11KeyTest, CyclingWhileTheModifiersStayDownPastesOnceForEachPress) {
    const auto taken = tap([this] { QTimer::singleShot(1, [this] { paste(); }); });
    hands_.press({keyControlLeft, keySuperLeft});
    for (int i = 1; i <= 20; ++i) {
        hands_.press(keyV);
        // Let go before the paste, or kept down until after it.
        if (i % 2 == 0)
            hands_.release(keyV);
        ASSERT_TRUE(await([&] { return target_.presses(keyV).size() == static_cast<std::size_t>(i); }));
        hands_.release(keyV);
    }
    hands_.release({keySuperLeft, keyControlLeft});
    awaitNoKeyDown();
    EXPECT_EQ(tapped_, 20);
    EXPECT_EQ(target_.presses(keyV), std::vector(20, OtherWindow::Key{true, keyV, control}));
}

TEST_F(X11KeyTest, QuittingLeavesNoKeyDownNorDoesUnpluggingTheKeyboard) {
    const auto plug = [this](std::uint32_t isIn) {  // a byte, but whole words are sent
        xcb_input_xi_change_property(connection_->get(), static_cast<std::uint16_t>(hands_.keyboard()),
                                     XCB_PROP_MODE_REPLACE, 8, connection_->atom("Device Enabled"), XCB_ATOM_INTEGER, 1,
                                     &isIn);
    };
    hands_.press(keySuperLeft);
    {
        X11KeyEvents shortLived(*connection_, keyboard_, {});
        const auto source = shortLived.createSource(EventSourceState::hidSystem);
        shortLived.post(EventTapLocation::hid, *shortLived.createKeyEvent(*source, VirtualKey::v, KeyDirection::down));
        EXPECT_TRUE(X11KeyStates::read(*connection_).synthetic.any());
    }
    EXPECT_TRUE(X11KeyStates::read(*connection_).synthetic.none());

    paste();
    EXPECT_TRUE(X11KeyStates::read(*connection_).synthetic.any());
    plug(0);
    awaitNoKeyDown();
    plug(1);
}

}  // namespace
}  // namespace brindle::x11test
