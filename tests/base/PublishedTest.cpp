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
    std::vector<int> stored;
    const auto subscription = number->subscribe([&](int value) {
        heard.push_back(value);
        stored.push_back(number->value());
    });
    *number = 2;
    *number = 2;
    EXPECT_THAT(heard, ElementsAre(1, 2, 2));
    EXPECT_THAT(stored, ElementsAre(1, 1, 2));
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

TEST_F(PublishedTest, AnObserverMayLeaveDestroyOrAssignAtAnyMoment) {
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

    Published<std::string> text(std::string(100, 'a'));
    std::string afterwards;
    const auto assigning = text.subscribe([&](const std::string& value) {
        if (value[0] == 'a')
            text = std::string(100, 'b');
        afterwards += value[0];
    });
    EXPECT_EQ(afterwards, "ba");
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

TEST(SignalTest, SurvivesItsListenersAndTheOtherWayRound) {
    auto signal = std::make_unique<Signal<>>();
    int calls = 0;
    Subscription outliving = signal->subscribe([&] {
        ++calls;
        signal.reset();
    });
    const auto neverReached = std::make_shared<int>();
    Subscription owner = signal->subscribe([held = neverReached] {});
    signal->emit();
    EXPECT_EQ(calls, 1);
    outliving.reset();
    owner.reset();
    EXPECT_EQ(neverReached.use_count(), 1);
}

TEST(SignalTest, AListenerThatOwnsItsOwnSubscriptionGoesWithoutHarm) {
    Signal<> signal;
    const auto own = std::make_shared<Subscription>();
    *own = signal.subscribe([own] { own->reset(); });
    signal.emit();
    EXPECT_EQ(own.use_count(), 1) << "the listener is gone";
}

}  // namespace
}  // namespace brindle
