#include "platform/qt/QtMainQueue.h"

#include <gmock/gmock.h>

#include <optional>
#include <string>

#include "platform/qt/Waiting.h"

namespace brindle {
namespace {

using testing::ElementsAre;

TEST(QtMainQueue, RunsStepsByDeadlineAndThenInTheOrderOfTheCalls) {
    QtMainQueue queue;
    std::vector<std::string> order;
    const auto note = [&order](const char* name) { return [&order, name] { order.emplace_back(name); }; };
    queue.after(0.03, note("30 ms"));
    queue.after(0.01, note("10 ms"));
    queue.post(note("first post"));
    queue.after(-1, note("overdue"));
    queue.post([&] {
        queue.post(note("posted by a step"));
        order.emplace_back("second post");
    });
    EXPECT_TRUE(order.empty()) << "no step runs within a call";
    ASSERT_TRUE(eventually([&] { return order.size() == 6; }));
    EXPECT_THAT(order, ElementsAre("first post", "overdue", "second post", "posted by a step", "10 ms", "30 ms"));
}

TEST(QtMainQueue, IsNeverEarly) {
    QtMainQueue queue;
    int early = 0;
    int count = 0;
    for (const double seconds : {0.0004, 0.0011, 0.008, 0.0125, 0.03})
        queue.after(seconds, [&, due = queue.uptime() + seconds] {
            early += queue.uptime() < due ? 1 : 0;
            ++count;
        });
    ASSERT_TRUE(eventually([&] { return count == 5; }));
    EXPECT_EQ(early, 0);
}

TEST(QtMainQueue, RepeatsUntilTheSubscriptionGoesAndSkipsMissedTicks) {
    QtMainQueue queue;
    int ticks = 0;
    int later = 0;
    Subscription ticker = queue.repeat(0.005, [&] {
        ++ticks;
        if (ticks == 1)
            queue.sleepMicroseconds(22000);  // four ticks are missed
        if (ticks == 3) {
            ticker.reset();
            queue.after(0.02, [&] { later = ticks; });
        }
    });
    const double start = queue.uptime();
    ASSERT_TRUE(eventually([&] { return later != 0; }));
    EXPECT_EQ(later, 3);
    EXPECT_GE(queue.uptime() - start, 0.055) << "a missed tick was made up for";
}

TEST(QtMainQueue, DropsPendingStepsWhenItGoes) {
    int runs = 0;
    std::optional<QtMainQueue> queue(std::in_place);
    Subscription ticker = queue->repeat(0.001, [&] { ++runs; });
    queue->post([&] { ++runs; });
    queue.reset();
    ticker.reset();
    QtMainQueue other;
    bool isOver = false;
    other.after(0.01, [&] { isOver = true; });
    ASSERT_TRUE(eventually([&] { return isOver; }));
    EXPECT_EQ(runs, 0);
}

}  // namespace
}  // namespace brindle
