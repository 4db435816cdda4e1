#include "platform/qt/QtMainQueue.h"

#include <gmock/gmock.h>

#include <string>

#include "platform/Await.h"

namespace brindle {
namespace {

TEST(QtMainQueue, RunsStepsByDeadlineThenInTheOrderOfTheCallsAndNeverEarly) {
    QtMainQueue queue;
    std::vector<std::string> order;
    const auto add = [&](double seconds, const char* name) {
        queue.after(seconds, [&, name, due = queue.uptime() + seconds] {
            EXPECT_GE(queue.uptime(), due) << name;
            order.emplace_back(name);
        });
    };
    add(0.03, "30 ms");
    add(0.0125, "12.5 ms");
    add(0.0011, "1.1 ms");
    add(0.0004, "0.4 ms");
    queue.post([&] {
        order.emplace_back("first post");
        queue.post([&] { order.emplace_back("posted by a step"); });
    });
    add(-1, "overdue");
    EXPECT_TRUE(order.empty()) << "no step runs within a call";
    ASSERT_TRUE(await([&] { return order.size() == 7; }));
    EXPECT_THAT(order, testing::ElementsAre("first post", "overdue", "posted by a step", "0.4 ms", "1.1 ms", "12.5 ms",
                                            "30 ms"));
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
    ASSERT_TRUE(await([&] { return later != 0; }));
    EXPECT_EQ(later, 3);
    EXPECT_GE(queue.uptime() - start, 0.055) << "a missed tick was made up for";
}

}  // namespace
}  // namespace brindle
