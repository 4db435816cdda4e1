#include "services/PasteService.h"

#include "support/DelegateTest.h"

namespace brindle {
namespace {

using ::testing::_;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class PasteServiceTest : public test::DelegateTest {
protected:
    PasteServiceTest() { sim.clipboard.copy("abc"); }

    /// The lines of one whole sequence, until its lock is gone.
    std::vector<std::string> paste() {
        sim.journal.take();
        PasteService::paste();
        sim.queue.advance(3);
        return sim.journal.take();
    }

    /// The same, its beginning only: what choosing the target wrote.
    std::vector<std::string> resolve() {
        sim.journal.take();
        PasteService::paste();
        auto lines = sim.journal.take();
        sim.queue.advance(3);
        lines.erase(lines.begin());  // the question for trust
        return lines;
    }
    /// Whether a call now does nothing, because a sequence is under way.
    bool isRefused() {
        sim.journal.take();
        PasteService::paste();
        return sim.journal.take().empty();
    }
};

TEST_F(PasteServiceTest, PastesIntoTheApplicationThatWasInFrontBeforeThePopover) {
    launch();
    const auto editor = workIn("TextEdit");
    editor->secondsToComeForward = 0.06;
    delegate->togglePopover();
    sim.queue.advance(0.1);
    sim.journal.take();
    PasteService::paste();
    sim.queue.advance(0.2);
    EXPECT_THAT(sim.journal.takeTimed(),
                ElementsAre("0.000 trust? (may prompt)",                                            //
                            "0.000 log 🎯 Using lastAppFocus as target: TextEdit",                   //
                            "0.030 popover closed",                                                 //
                            "0.030 leave mouse",                                                    //
                            "0.030 deactivate",                                                     //
                            "0.030 hide",                                                           //
                            "0.030 log 📌 Updated lastAppFocus via NSWorkspace: TextEdit",           //
                            "0.080 log 🔄 Activating previous app (from lastAppFocus)...",           //
                            "0.080 deactivate",                                                     //
                            "0.080 activate TextEdit",                                              //
                            "0.080 log ✅ Direct activation requested for: TextEdit result=true",    //
                            "0.110 log ⏳ Waiting for frontmost to become: TextEdit",                //
                            "0.110 log ✅ Frontmost switched to target: TextEdit",                   //
                            "0.110 log 🔎 Frontmost before paste: TextEdit (org.example.TextEdit)",  //
                            "0.110 create key source 1",                                            //
                            "0.110 key 55 down flags=0x100000 at 0",                                //
                            "0.110 sleep 8000",                                                     //
                            "0.118 key 9 down flags=0x100000 at 0",                                 //
                            "0.118 TextEdit pastes: abc",                                           //
                            "0.118 sleep 12000",                                                    //
                            "0.130 key 9 up flags=0x100000 at 0",                                   //
                            "0.130 sleep 8000",                                                     //
                            "0.138 key 55 up flags=0x0 at 0",                                       //
                            "0.138 log ⌨️ Sent Cmd+V to frontmost app (HID)",                   //
                            "0.138 deactivate",                                                     //
                            "0.138 hide",                                                           //
                            "0.138 release key source"));
}

TEST_F(PasteServiceTest, ChoosesTheTargetByTheFirstRuleThatApplies) {
    const auto editor = workIn("TextEdit");
    const auto browser = sim.desktop.launch("Browser");
    const auto nameless = sim.desktop.launch({.bundleIdentifier = "org.example.Tool"});
    const auto blank = sim.desktop.launch(test::ApplicationFacts());

    delegate->setPreviousApp(browser);
    EXPECT_THAT(resolve(), ElementsAre("log 🎯 Using previousApp as target: Browser"));
    delegate->setLastAppFocus(nameless);
    EXPECT_THAT(resolve(), ElementsAre("log 🎯 Using lastAppFocus as target: org.example.Tool"));
    delegate->setPreviousApp(nullptr);
    delegate->setLastAppFocus(blank);
    EXPECT_THAT(resolve(), ElementsAre("log 🎯 Using lastAppFocus as target: Unknown",
                                       "log 🔗 Synced previousApp from resolved target."));
    EXPECT_EQ(delegate->previousApp(), blank);

    delegate->setLastAppFocus(nullptr);
    delegate->setPreviousApp(nullptr);
    sim.desktop.bringToFront(editor);
    EXPECT_THAT(resolve(), ElementsAre("log 📌 Fallback target from current frontmost: TextEdit"));
    EXPECT_EQ(delegate->lastAppFocus(), editor);
    EXPECT_EQ(delegate->previousApp(), editor);

    sim.self.setDelegate(nullptr);
    EXPECT_THAT(paste(), ElementsAre(_, "log 📌 Fallback target (no AppDelegate): TextEdit", "deactivate", "hide",
                                     "log ⏳ Waiting for frontmost to become: TextEdit", _, _, _, _, _, _,
                                     "TextEdit pastes: abc", _, _, _, _, _, "deactivate", "hide", _));
}

TEST_F(PasteServiceTest, WhatIsNoOrdinaryRunningApplicationOfOthersIsNoTarget) {
    const auto quit = sim.desktop.launch("Gone");
    quit->hasQuit = true;
    const test::SimulatedApplicationHandle unfit[] = {
        sim.self.self, quit,
        sim.desktop.launch({.bundleIdentifier = "a", .localizedName = "a", .policy = ActivationPolicy::accessory}),
        sim.desktop.launch({.bundleIdentifier = "b", .localizedName = "b", .policy = ActivationPolicy::prohibited})};
    EXPECT_THAT(resolve(), IsEmpty()) << "nothing in front";
    for (const auto& app : unfit) {
        sim.desktop.bringToFront(app);
        EXPECT_THAT(resolve(), IsEmpty()) << *app->facts.localizedName;
        sim.self.setDelegate(nullptr);
        EXPECT_THAT(resolve(), IsEmpty()) << *app->facts.localizedName;
        sim.self.setDelegate(delegate.get());
        delegate->setPreviousApp(app);
        EXPECT_THAT(resolve(), ElementsAre("log 🎯 Using previousApp as target: " + *app->facts.localizedName))
            << "what is remembered is used as it is";
        delegate->setLastAppFocus(app);
        EXPECT_THAT(resolve(), ElementsAre("log 🎯 Using lastAppFocus as target: " + *app->facts.localizedName));
        delegate->setLastAppFocus(nullptr);
        delegate->setPreviousApp(nullptr);
    }
    sim.package.identifier = std::nullopt;
    sim.desktop.bringToFront(sim.desktop.launch({.localizedName = "anonymous"}));
    EXPECT_THAT(resolve(), IsEmpty()) << "two absent identifiers are equal";
}

TEST_F(PasteServiceTest, WithoutATargetTheChordGoesToWhoeverIsInFrontWithoutWaiting) {
    PasteService::paste();
    sim.queue.advance(0.11);
    EXPECT_THAT(sim.journal.takeTimed(),
                ElementsAre("0.000 trust? (may prompt)", "0.030 deactivate", "0.030 hide",
                            "0.080 log 🔄 Activating previous app (from lastAppFocus)...", "0.080 deactivate",
                            "0.080 log ⚠️ No valid lastAppFocus to activate.",
                            "0.110 log ⚠️ No target app resolved. Sending paste as fallback.",
                            "0.110 create key source 1", _, _, _, "0.118 nobody pastes: abc", _, _, _, _,
                            "0.138 log ⌨️ Sent Cmd+V to frontmost app (HID)", "0.138 deactivate", "0.138 hide",
                            "0.138 release key source"));
    sim.queue.advance(0.049);
    EXPECT_TRUE(isRefused());
    sim.queue.advance(0.001);
    EXPECT_FALSE(isRefused());
}

TEST_F(PasteServiceTest, ATargetIsLookedForEveryFiftyMillisecondsToTheLimitWhateverTheWallClockSays) {
    const auto editor = sim.desktop.launch("TextEdit");
    editor->ignoresRequests = true;
    delegate->setLastAppFocus(editor);
    sim.desktop.bringToFront(sim.desktop.launch(test::ApplicationFacts()));
    PasteService::paste();
    sim.queue.advance(0.3);
    sim.queue.wallClock -= 3600;
    sim.journal.take();
    sim.queue.advance(1);
    EXPECT_THAT(sim.journal.take(), IsEmpty());
    sim.queue.advance(0.01);
    EXPECT_THAT(
        sim.journal.take(),
        ::testing::IsSupersetOf({"log ⚠️ Frontmost app did not switch to target in time. Sending paste anyway as "
                                 "fallback.",
                                 "log 🔎 Frontmost before paste: Unknown (nil)", "? pastes: abc"}));

    PasteService::paste();
    sim.queue.advance(0.121);
    sim.journal.take();
    sim.desktop.bringToFront(editor);
    sim.queue.advance(0.038);
    EXPECT_THAT(sim.journal.take(), IsEmpty());
    sim.queue.advance(0.001);
    EXPECT_THAT(sim.journal.take(), Contains("log ✅ Frontmost switched to target: TextEdit"));
}

TEST_F(PasteServiceTest, ATargetIsKnownByItsIdentifierOrItsProcess) {
    const auto front = sim.desktop.launch({.bundleIdentifier = "a", .localizedName = "A", .processIdentifier = 7});
    const struct {
        std::optional<std::string> identifier;
        std::int32_t process;
        bool isReached;
    } rows[] = {{"a", 8, true}, {"b", 7, true}, {std::nullopt, 7, true}, {"b", 8, false}, {std::nullopt, 8, false}};
    for (const auto& row : rows) {
        const auto target = sim.desktop.launch(
            {.bundleIdentifier = row.identifier, .localizedName = "B", .processIdentifier = row.process});
        target->ignoresRequests = true;
        delegate->setLastAppFocus(target);
        sim.desktop.bringToFront(front);
        const auto lines = paste();
        EXPECT_EQ(std::ranges::count(lines, "log ✅ Frontmost switched to target: A"), row.isReached)
            << row.identifier.value_or("none") << row.process;
    }
    sim.desktop.sendToBack(front);
    delegate->setLastAppFocus(sim.desktop.launch(test::ApplicationFacts()));
    PasteService::paste();
    sim.queue.advance(0.11);
    EXPECT_THAT(sim.journal.take(), Contains("log ✅ Frontmost switched to target: Unknown")) << "nobody in front";
}

TEST_F(PasteServiceTest, ALaterFocusIsActivatedButTheTargetChosenFirstIsAwaited) {
    launch();
    workIn("TextEdit");
    PasteService::paste();
    sim.queue.advance(0.05);
    workIn("Browser");
    sim.queue.advance(0.1);
    EXPECT_THAT(sim.journal.take(),
                ElementsAre("log 🔄 Activating previous app (from lastAppFocus)...", "deactivate", "activate Browser",
                            "log ✅ Direct activation requested for: Browser result=true",
                            "log ⏳ Waiting for frontmost to become: TextEdit"));
}

TEST_F(PasteServiceTest, WithoutTrustNothingHappensForASecond) {
    sim.trust.isTrusted = false;
    PasteService::paste();
    EXPECT_THAT(sim.journal.take(),
                ElementsAre("trust? (may prompt)", "log ❌ Accessibility permission not granted. Cannot paste."));
    sim.trust.isTrusted = true;
    sim.queue.advance(0.999);
    EXPECT_TRUE(isRefused());
    sim.queue.advance(0.001);
    EXPECT_FALSE(isRefused());
}

TEST_F(PasteServiceTest, APopoverAskedForMeanwhileOpensWhenTheChordIsOut) {
    launch();
    const auto editor = workIn("TextEdit");
    for (const double moment : {0.0, 0.02, 0.05, 0.09, 0.105, 0.15}) {
        PasteService::paste();
        sim.queue.advance(moment);
        sim.shortcuts.press(9, 0x300);
        sim.queue.advance(0.187 - moment);
        EXPECT_FALSE(delegate->isPopoverShown()) << moment;
        EXPECT_THAT(sim.journal.take(), Contains("TextEdit pastes: abc")) << moment;
        sim.queue.advance(0.001);
        EXPECT_TRUE(delegate->isPopoverShown()) << moment;
        sim.queue.advance(1);
        PasteService::paste();
        sim.shortcuts.press(9, 0x300);
        EXPECT_FALSE(delegate->isPopoverShown()) << "one that is open closes at once";
        sim.queue.advance(1);
        EXPECT_FALSE(delegate->isPopoverShown());
        sim.desktop.bringToFront(editor);
        sim.journal.take();
    }
}

TEST_F(PasteServiceTest, AWaitingSequenceIsJoinedByAnotherOneAfterASecond) {
    const auto editor = sim.desktop.launch("TextEdit");
    editor->ignoresRequests = true;
    delegate->setLastAppFocus(editor);
    PasteService::paste();
    sim.queue.advance(0.999);
    EXPECT_TRUE(isRefused());
    sim.queue.advance(0.001);
    EXPECT_FALSE(isRefused());
    sim.queue.advance(3);
    EXPECT_THAT(sim.journal.take(), Contains("nobody pastes: abc").Times(2));
}

TEST_F(PasteServiceTest, AKeyboardThatRefusesIsOneLine) {
    workIn("TextEdit");
    sim.keyboard.refusesSource = true;
    EXPECT_EQ(paste().back(), "log ❌ Failed to create event source");
    sim.keyboard.refusesSource = false;
    sim.keyboard.eventsLeft = 3;
    const auto lines = paste();
    EXPECT_THAT(std::vector(lines.end() - 3, lines.end()),
                ElementsAre("create key source 1", "log ❌ Failed to create keyboard events", "release key source"));
}

}  // namespace
}  // namespace brindle
