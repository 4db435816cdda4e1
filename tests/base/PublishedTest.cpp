#include "base/Published.h"

#include <gmock/gmock.h>

#include <optional>
#include <string>
#include <vector>

namespace brindle {
namespace {

using ::testing::ElementsAre;

struct PublishedTest : ::testing::Test {
    std::unique_ptr<Published<int>> number = std::make_unique<Published<int>>(1);
    std::vector<int> heard;
};

TEST_F(PublishedTest, ObserversHearTheCurrentValueAndThenEachNewOneBeforeItIsStored) {
    const auto subscription = number->subscribe([&](int value) {
        heard.push_back(value);
        heard.push_back(number->value());
    });
    *number = 2;
    *number = 2;
    EXPECT_THAT(heard, ElementsAre(1, 1, 2, 1, 2, 2));
}

TEST_F(PublishedTest, AnAssignmentDuringADeliveryReachesEveryoneInOrderAndWhoJoinsThenOnce) {
    std::vector<int> alsoHeard;
    std::vector<int> heardByJoiner;
    Subscription joiner;
    const auto first = number->subscribe([&](int value) {
        heard.push_back(value);
        if (value == 2)
            *number = 3;
        else if (value == 3)
            joiner = number->subscribe([&](int later) { heardByJoiner.push_back(later); });
    });
    const auto second = number->subscribe([&](int value) { alsoHeard.push_back(value); });
    *number = 2;
    EXPECT_THAT(heard, ElementsAre(1, 2, 3));
    EXPECT_THAT(alsoHeard, ElementsAre(1, 2, 3));
    EXPECT_EQ(number->value(), 3);
    EXPECT_THAT(heardByJoiner, ElementsAre(3));
}

TEST_F(PublishedTest, AnObserverMayLeaveOrDestroyAtAnyMoment) {
    Subscription leaving;
    leaving = number->subscribe([&](int value) {
        heard.push_back(value);
        leaving.reset();
    });
    *number = 2;
    const auto destroying = number->subscribe([&](int value) {
        if (value == 3)
            number.reset();
        else
            heard.push_back(value * 10);
    });
    *number = 3;
    EXPECT_THAT(heard, ElementsAre(1, 2, 20));
}

TEST(SignalTest, WhoLeavesDuringADeliveryIsNotCalledAndWhoJoinsWaitsForTheNext) {
    Signal<> signal;
    std::vector<std::string> calls;
    Subscription joined;
    Subscription leaver;
    const auto first = signal.subscribe([&] {
        calls.emplace_back("first");
        leaver.reset();
        if (!joined)
            joined = signal.subscribe([&] { calls.emplace_back("joined"); });
    });
    leaver = signal.subscribe([&] { calls.emplace_back("leaver"); });
    signal.emit();
    EXPECT_THAT(calls, ElementsAre("first"));
    signal.emit();
    EXPECT_THAT(calls, ElementsAre("first", "first", "joined"));
}

}  // namespace
}  // namespace brindle
