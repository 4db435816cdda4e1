#include "services/ClipboardMonitor.h"

#include "services/HistoryManager.h"
#include "services/SettingsManager.h"
#include "support/SimulatedTest.h"

namespace brindle {
namespace {

using ::testing::IsEmpty;
using ::testing::SizeIs;

class ClipboardMonitorTest : public test::SimulatedTest {
protected:
    const std::vector<ClipboardItem>& history() const { return manager.history().value(); }

    SettingsManager settings;
    HistoryManager manager{settings};
    ClipboardMonitor monitor{manager};
};

TEST_F(ClipboardMonitorTest, ACopyIsInTheHistoryHalfASecondLaterWithItsSource) {
    sim.desktop.bringToFront(sim.desktop.launch("TextEdit"));
    sim.clipboard.copy(" abc\n");
    sim.queue.advance(0.499);
    EXPECT_THAT(history(), IsEmpty());
    sim.queue.advance(0.001);
    ASSERT_THAT(history(), SizeIs(1));
    EXPECT_EQ(history()[0].content.string(), " abc\n");
    EXPECT_EQ(history()[0].sourceApp->string(), "org.example.TextEdit");
    EXPECT_EQ(history()[0].date.seconds, sim.queue.now().seconds);
    sim.queue.advance(5);
    EXPECT_EQ(sim.clipboard.readings, 1) << "a poll without a change costs no reading";
    sim.desktop.bringToFront(sim.desktop.launch({.localizedName = "tool"}));
    sim.clipboard.copy("");
    sim.queue.advance(0.5);
    EXPECT_TRUE(history()[0].content.isEmpty());
    EXPECT_FALSE(history()[0].sourceApp) << "the application has no identifier";
}

TEST_F(ClipboardMonitorTest, SeveralChangesBetweenTwoPollsAreOneAndAnImageIsNone) {
    sim.clipboard.copy("a");
    sim.queue.advance(0.2);
    sim.clipboard.copy("b");
    sim.queue.advance(0.3);
    ASSERT_THAT(history(), SizeIs(1));
    EXPECT_EQ(history()[0].content.string(), "b");
    sim.clipboard.copy(std::nullopt);
    sim.queue.advance(0.5);
    EXPECT_THAT(history(), SizeIs(1));
    EXPECT_EQ(monitor.lastChangeCount().value(), 3);
}

TEST_F(ClipboardMonitorTest, AnInternalCopyIsSwallowedOnceWithWhateverFollowsInTheSamePoll) {
    monitor.setIsInternalCopy(true);
    sim.queue.advance(1);
    EXPECT_TRUE(monitor.isInternalCopy()) << "a poll without a change leaves the flag";
    sim.clipboard.clearContents();
    sim.clipboard.setString("own");
    sim.clipboard.copy("outside");
    sim.queue.advance(0.5);
    EXPECT_FALSE(monitor.isInternalCopy());
    EXPECT_THAT(history(), IsEmpty());
    sim.clipboard.copy("later");
    sim.queue.advance(0.5);
    EXPECT_THAT(history(), SizeIs(1));
}

}  // namespace
}  // namespace brindle
