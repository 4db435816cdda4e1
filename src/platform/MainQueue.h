#pragma once

#include <functional>

#include "base/Date.h"
#include "base/Signal.h"

namespace brindle {

/// The main thread's queue of steps and the only source of time. Steps run one after the other on the main thread,
/// never from within a call of this class, by deadline and then in the order of the calls; setting the wall clock
/// moves no deadline. Steps that are still pending when the queue is destroyed are dropped.
class MainQueue {
public:
    virtual ~MainQueue() = default;

    /// Runs the step on a later turn, in the order of posting.
    virtual void post(std::function<void()> step) = 0;

    /// Runs the step once, `seconds` from now (to the millisecond, never early). Not to be cancelled: a step that may
    /// outlive its owner holds it weakly.
    virtual void after(double seconds, std::function<void()> step) = 0;

    /// Runs the step every `seconds` until the subscription is let go. Missed ticks are not made up for.
    [[nodiscard]] virtual Subscription repeat(double seconds, std::function<void()> step) = 0;

    /// The wall clock, for dates.
    [[nodiscard]] virtual Date now() const = 0;
    /// Seconds of a clock that nobody sets, for limits.
    [[nodiscard]] virtual double uptime() const = 0;

    /// Blocks the main thread: only for the few milliseconds between two posted key events.
    virtual void sleepMicroseconds(unsigned microseconds) = 0;
};

}  // namespace brindle
