#include "views/Feedback.h"

#include <gmock/gmock.h>

#include "support/SimulatedPlatform.h"

namespace brindle::test {

namespace {

class FeedbackTest : public ::testing::Test {
protected:
    SimulatedPlatform sim;
};

TEST_F(FeedbackTest, NamesVersionSystemAndDeviceBelowTwoEmptyLines) {
    EXPECT_EQ(osVersionDescription(), "Version 12.4.0 (Build abc)");
    EXPECT_EQ(feedbackBody(), "\n\n---\nBrindle: 1.2.3\nSystem: Version 12.4.0 (Build abc)\nDevice: Simulator");
    sim.package.info.clear();
    EXPECT_EQ(appVersion(), "1.0");
}

TEST_F(FeedbackTest, EscapesWhatAQueryMayNotHold) {
    EXPECT_EQ(percentEncodedForQuery("a b\n\xC3\xA9#%\"<>[]^`{|}\\"),
              "a%20b%0A%C3%A9%23%25%22%3C%3E%5B%5D%5E%60%7B%7C%7D%5C");
    EXPECT_EQ(percentEncodedForQuery("AZaz09-._~!$&'()*+,;=:@/?"), "AZaz09-._~!$&'()*+,;=:@/?");
}

TEST_F(FeedbackTest, HandsTheMailToTheDesktop) {
    openFeedbackMail();
    EXPECT_THAT(
        sim.journal.take(),
        ::testing::ElementsAre(
            "open mailto:support@brindle.example?subject=Brindle%20Feedback&body=%0A%0A---%0ABrindle:%201.2.3%0A"
            "System:%20Version%2012.4.0%20(Build%20abc)%0ADevice:%20Simulator"));
}

}  // namespace

}  // namespace brindle::test
