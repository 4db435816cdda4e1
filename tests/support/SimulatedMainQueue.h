#pragma once

#include <map>
#include <utility>

#include "platform/MainQueue.h"
#include "support/Journal.h"

namespace brindle::test {

class SimulatedMainQueue final : public MainQueue {
public:
    SimulatedMainQueue(Clock& clock, Journal& journal) : clock_(clock), journal_(journal) {}

    void post(std::function<void()> step) override { after(0, std::move(step)); }
    void after(double seconds, std::function<void()> step) override;
    Subscription repeat(double seconds, std::function<void()> step) override;
    Date now() const override { return {wallClock + uptime()}; }
    double uptime() const override { return static_cast<double>(clock_.microseconds) / 1e6; }
    void sleepMicroseconds(unsigned microseconds) override;

    /// Lets that much time pass: runs what falls due, in order, each at its time.
    void advance(double seconds);
    /// Runs what is due now, and what that posts.
    void run() { advance(0); }

    double wallClock = 800000000;  ///< what the wall clock showed when this queue began

private:
    struct Repetition;
    void addRepetition(const std::shared_ptr<Repetition>& repetition);

    Clock& clock_;
    Journal& journal_;
    std::uint64_t count_ = 0;
    std::map<std::pair<std::int64_t, std::uint64_t>, std::function<void()>> steps_;  // by deadline, then by order
};

}  // namespace brindle::test
