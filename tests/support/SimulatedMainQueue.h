#pragma once

#include <algorithm>
#include <map>
#include <memory>

#include "platform/MainQueue.h"
#include "support/Journal.h"

namespace brindle::test {

class SimulatedMainQueue final : public MainQueue {
public:
    SimulatedMainQueue(Clock& clock, Journal& journal) : clock_(clock), journal_(journal) {}

    void post(std::function<void()> step) override { after(0, std::move(step)); }
    void after(double seconds, std::function<void()> step) override {
        steps_.emplace(std::pair(clock_.microseconds + toMicroseconds(seconds), ++count_), std::move(step));
    }
    Subscription repeat(double seconds, std::function<void()> step) override {
        auto shared = std::make_shared<std::function<void()>>(std::move(step));
        tickAfter(clock_.microseconds, toMicroseconds(seconds), shared);
        return Subscription([shared]() mutable { shared.reset(); });
    }
    Date now() const override { return {wallClock + uptime()}; }
    double uptime() const override { return static_cast<double>(clock_.microseconds) / 1e6; }
    void sleepMicroseconds(unsigned microseconds) override {
        journal_.add("sleep " + std::to_string(microseconds));
        clock_.microseconds += microseconds;
    }

    /// Lets that much time pass: runs what falls due, in order, each at its time.
    void advance(double seconds) {
        const auto end = clock_.microseconds + toMicroseconds(seconds);
        while (!steps_.empty() && steps_.begin()->first.first <= end) {
            auto next = steps_.extract(steps_.begin());
            clock_.microseconds = std::max(clock_.microseconds, next.key().first);
            next.mapped()();
        }
        clock_.microseconds = std::max(clock_.microseconds, end);
    }
    /// Runs what is due now.
    void run() { advance(0); }

    double wallClock = 800000000;  ///< what the wall clock showed when this queue began

private:
    /// Missed ticks are not made up for.
    void tickAfter(std::int64_t last, std::int64_t interval, std::weak_ptr<std::function<void()>> step) {
        const auto due = last + ((clock_.microseconds - last) / interval + 1) * interval;
        steps_.emplace(std::pair(due, ++count_), [=, this] {
            const auto alive = step.lock();
            if (!alive)
                return;
            tickAfter(due, interval, step);
            (*alive)();
        });
    }

    Clock& clock_;
    Journal& journal_;
    std::uint64_t count_ = 0;
    std::map<std::pair<std::int64_t, std::uint64_t>, std::function<void()>> steps_;  // by deadline, then by order
};

}  // namespace brindle::test
