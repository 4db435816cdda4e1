#include "app/AppDelegate.h"

#include "support/DelegateTest.h"

namespace brindle {
namespace {

using ::testing::_;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr Point insidePopover = {1001, 25};
constexpr Point outsidePopover = {999, 25};

using LaunchTest = test::DelegateTest;
using FocusTest = test::DelegateTest;

class PopoverTest : public test::DelegateTest {
protected:
    PopoverTest() {
        launch();
        editor = workIn("TextEdit");
    }

    void open() {
        sim.tray.click();
        sim.queue.run();
        sim.journal.take();
        EXPECT_TRUE(delegate->isPopoverShown());
    }

    test::SimulatedApplicationHandle editor;
};

TEST_F(LaunchTest, BuildsEverythingInOrder) {
    delegate->togglePopover();
    delegate->closePopover();
    EXPECT_THAT(sim.journal.take(), IsEmpty());
    delegate->applicationDidFinishLaunching();
    EXPECT_THAT(sim.journal.take(),
                ElementsAre("unregister login item",                   //
                            "event tap at 1 for 0x400",                //
                            "enable event tap",                        //
                            "popover size 350x500",                    //
                            "popover behavior 1",                      //
                            "popover does not animate",                //
                            "popover content",                         //
                            "status item -1",                          //
                            "status icon outline.svg 18x18 template",  //
                            "hot key 9 0x300 as 0x11223344/1",         //
                            "hot key handler for 0x6b657962/5"));
}

TEST_F(LaunchTest, RefusalsAreLines) {
    sim.taps.refuses = true;
    sim.shortcuts.status = 10;
    sim.package.images.clear();
    delegate->applicationDidFinishLaunching();
    EXPECT_THAT(sim.journal.take(),
                ::testing::IsSupersetOf({"log Failed to create event tap", "log Failed to register hotkey: 10",
                                         "status icon clipboard.svg 18x18 template"}));
}

TEST_F(FocusTest, FollowsOrdinaryApplicationsOnly) {
    launch();
    const auto editor = sim.desktop.launch("TextEdit");
    sim.desktop.bringToFront(editor);
    EXPECT_THAT(sim.journal.take(), ElementsAre("log 📌 Updated lastAppFocus via NSWorkspace: TextEdit"));
    const auto quit = sim.desktop.launch("Gone");
    quit->hasQuit = true;
    for (const auto& unfit :
         {sim.self.self, quit, sim.desktop.launch({.bundleIdentifier = "dock", .policy = ActivationPolicy::accessory})})
        sim.desktop.bringToFront(unfit);
    delegate->handleDidActivateApp(nullptr);
    EXPECT_EQ(delegate->lastAppFocus(), editor);
    EXPECT_EQ(delegate->previousApp(), editor);
    EXPECT_THAT(sim.journal.take(), IsEmpty());
}

TEST_F(FocusTest, StoringSeesWhatIsInFront) {
    const auto store = [this] {
        sim.journal.take();
        delegate->storePreviousApp();
        return sim.journal.take();
    };
    const auto nothing = "log ⚠️ previousApp/lastAppFocus is nil after store; paste target may be unavailable.";
    delegate->setPreviousApp(sim.desktop.launch("Stale"));
    EXPECT_THAT(store(), ElementsAre(nothing));
    EXPECT_FALSE(delegate->previousApp());
    sim.desktop.bringToFront(sim.self.self);
    EXPECT_THAT(store(), ElementsAre("log 📱 storePreviousApp sees frontmost: Self (org.example.Self)",
                                     "log ℹ️ Frontmost is Brindle; keeping lastAppFocus unchanged: nil", nothing));

    const auto nameless = sim.desktop.launch({.bundleIdentifier = "tool"});
    sim.desktop.bringToFront(nameless);
    EXPECT_THAT(store(), ElementsAre("log 📱 storePreviousApp sees frontmost: Unknown (tool)",
                                     "log 📌 Updated lastAppFocus from frontmost: Unknown"));
    EXPECT_EQ(delegate->previousApp(), nameless);
    delegate->setLastAppFocus(sim.desktop.launch("TextEdit"));
    sim.desktop.bringToFront(sim.self.self);
    EXPECT_THAT(store(), ElementsAre("log 📱 storePreviousApp sees frontmost: Self (org.example.Self)",
                                     "log ℹ️ Frontmost is Brindle; keeping lastAppFocus unchanged: TextEdit"));
    EXPECT_EQ(delegate->previousApp(), delegate->lastAppFocus());

    sim.package.identifier = std::nullopt;
    sim.desktop.sendToBack(sim.self.self);
    while (const auto front = sim.desktop.frontmost())
        sim.desktop.sendToBack(front);
    EXPECT_THAT(store(), ElementsAre("log ℹ️ Frontmost is Brindle; keeping lastAppFocus unchanged: TextEdit"))
        << "no application and no identifier of our own are equal";
}

TEST_F(PopoverTest, AClickAndTheShortcutOpenAndCloseItAlike) {
    const auto byClick = [this] { sim.tray.click(); };
    const auto byShortcut = [this] { sim.shortcuts.press(9, 0x300); };
    for (const auto& toggle : std::initializer_list<std::function<void()>>{byClick, byShortcut}) {
        sim.desktop.bringToFront(editor);
        sim.journal.take();
        toggle();
        sim.queue.run();
        EXPECT_THAT(
            sim.journal.take(),
            ElementsAre("log 📱 storePreviousApp sees frontmost: TextEdit (org.example.TextEdit)",
                        "log 📌 Updated lastAppFocus from frontmost: TextEdit", "popover shown at 1000,24 edge 1",
                        "come to the front", "popover has the keyboard", "watch mouse 0x14"));
        toggle();
        EXPECT_THAT(sim.journal.take(), ElementsAre("popover closed", "leave mouse"));
        EXPECT_FALSE(delegate->hasGlobalMouseUpMonitor());
    }
}

TEST_F(PopoverTest, AClickElsewhereClosesItUnlessItIsOverThePopoverOrItHasClosedByItself) {
    open();
    sim.mouse.releaseElsewhere(insidePopover, leftMouseUpMask);
    EXPECT_TRUE(delegate->isPopoverShown());
    sim.mouse.releaseElsewhere(outsidePopover, rightMouseUpMask);
    EXPECT_THAT(sim.journal.take(), ElementsAre("popover closed", "leave mouse"));
    open();
    sim.desktop.bringToFront(editor);
    EXPECT_FALSE(delegate->isPopoverShown());
    sim.journal.take();
    sim.mouse.releaseElsewhere(outsidePopover, leftMouseUpMask);
    EXPECT_THAT(sim.journal.take(), IsEmpty());
    delegate->togglePopover();
    EXPECT_THAT(sim.journal.take(), ElementsAre(_, _, _, _, _, "leave mouse", "watch mouse 0x14"));
    EXPECT_EQ(sim.mouse.monitors, 1);
}

}  // namespace
}  // namespace brindle
