#include "services/CyclingPasteManager.h"

#include "services/HistoryManager.h"
#include "services/SettingsManager.h"
#include "support/DelegateTest.h"

namespace brindle {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::uint64_t controlCommand = eventFlags::control | eventFlags::command;

class CyclingPasteTest : public test::DelegateTest {
protected:
    void fill(std::initializer_list<const char*> oldestFirst) {
        for (const char* text : oldestFirst)
            history.addItem({Uuid::generate(), text, ItemType::text, Date{}, std::nullopt, false, std::nullopt});
        sim.journal.take();
    }

    /// Presses the shortcut and returns the text that is on the pasteboard afterwards.
    std::string press() {
        EXPECT_FALSE(sim.taps.reachesApplications(VirtualKey::v, controlCommand));
        sim.queue.run();
        return sim.clipboard.content().value_or("nothing").string();
    }

    SettingsManager settings;
    HistoryManager history{settings};
    std::shared_ptr<CyclingPasteManager> manager = CyclingPasteManager::create(history);
};

TEST_F(CyclingPasteTest, TakesOnlyVWithBothModifiersAndWhateverOthers) {
    constexpr std::uint64_t shift = 0x20000;
    EXPECT_THAT(sim.journal.take(), Contains("event tap at 1 for 0x400"));
    EXPECT_TRUE(sim.taps.reachesApplications(VirtualKey::v, eventFlags::command));
    EXPECT_TRUE(sim.taps.reachesApplications(VirtualKey::v, eventFlags::control | shift));
    EXPECT_TRUE(sim.taps.reachesApplications(VirtualKey::command, controlCommand));
    EXPECT_FALSE(sim.taps.reachesApplications(VirtualKey::v, controlCommand));
    EXPECT_FALSE(sim.taps.reachesApplications(VirtualKey::v, controlCommand | shift));
    EXPECT_THAT(sim.journal.take(), IsEmpty()) << "the step is only queued";
    sim.queue.run();
    EXPECT_THAT(sim.journal.take(), ElementsAre("trust? (may prompt)", "trust? (may prompt)"));
}

TEST_F(CyclingPasteTest, GoesFromTheNewestToTheOldestAndStartsAgainAfterARest) {
    fill({"a", "b", "c"});
    const std::pair<double, const char*> presses[] = {{0, "c"}, {1, "b"},     {1, "a"}, {1, "c"},
                                                      {5, "b"}, {5.125, "c"}, {1, "b"}};
    for (const auto& [pause, text] : presses) {
        sim.queue.advance(pause);
        EXPECT_EQ(press(), text) << pause;
    }
    history.deleteItem(history.history().value()[0]);
    history.deleteItem(history.history().value()[0]);
    EXPECT_EQ(press(), "a") << "the index is applied to the history as it is then";
}

TEST_F(CyclingPasteTest, AStepRemembersTheFrontWritesAndPastes) {
    fill({"a"});
    workIn("TextEdit");
    press();
    sim.queue.advance(0.2);
    const auto lines = sim.journal.take();
    EXPECT_THAT(std::vector(lines.begin(), lines.begin() + 6),
                ElementsAre("trust? (may prompt)", "log 📌 [Cycling] previousApp set to: TextEdit", "clear pasteboard",
                            "set pasteboard: a", "trust? (may prompt)", "log 🎯 Using previousApp as target: TextEdit"));
    EXPECT_THAT(lines, Contains("TextEdit pastes: a"));
    EXPECT_FALSE(delegate->lastAppFocus());
    sim.desktop.bringToFront(sim.self.self);
    press();
    sim.journal.take();
    press();
    EXPECT_THAT(sim.journal.take(), ElementsAre("trust? (may prompt)", "clear pasteboard", "set pasteboard: a"))
        << "in front of itself, and while the lock is held";
}

}  // namespace
}  // namespace brindle
