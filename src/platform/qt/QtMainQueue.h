#pragma once

#include <QTimer>
#include <chrono>
#include <map>

#include "platform/MainQueue.h"

namespace brindle {

/// The main queue on the toolkit's event loop. Needs an application object.
class QtMainQueue final : public MainQueue {
public:
    QtMainQueue();

    void post(std::function<void()> step) override;
    void after(double seconds, std::function<void()> step) override;
    [[nodiscard]] Subscription repeat(double seconds, std::function<void()> step) override;
    [[nodiscard]] Date now() const override;
    [[nodiscard]] double uptime() const override;
    void sleepMicroseconds(unsigned microseconds) override;

private:
    using Clock = std::chrono::steady_clock;
    struct Ticker;

    void schedule(Clock::time_point deadline, std::function<void()> step);
    void tick(const std::shared_ptr<Ticker>& ticker);
    void runDueSteps();
    void armTimer();

    // Steps of one deadline stay in the order of their insertion.
    std::multimap<Clock::time_point, std::function<void()>> steps_;
    QTimer timer_;
};

}  // namespace brindle
