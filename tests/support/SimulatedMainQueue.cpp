#include "support/SimulatedMainQueue.h"

#include <algorithm>
#include <memory>

namespace brindle::test {

struct SimulatedMainQueue::Repetition {
    std::int64_t interval;
    std::int64_t due;
    std::function<void()> step;
};

void SimulatedMainQueue::after(double seconds, std::function<void()> step) {
    steps_.emplace(std::pair(clock_.microseconds + toMicroseconds(seconds), ++count_), std::move(step));
}

Subscription SimulatedMainQueue::repeat(double seconds, std::function<void()> step) {
    const auto interval = toMicroseconds(seconds);
    auto repetition = std::make_shared<Repetition>(Repetition{interval, clock_.microseconds, std::move(step)});
    addRepetition(repetition);
    return Subscription([repetition]() mutable { repetition.reset(); });
}

void SimulatedMainQueue::addRepetition(const std::shared_ptr<Repetition>& repetition) {
    do {
        repetition->due += repetition->interval;
    } while (repetition->due <= clock_.microseconds);
    steps_.emplace(std::pair(repetition->due, ++count_), [this, weak = std::weak_ptr(repetition)] {
        const auto alive = weak.lock();
        if (!alive)
            return;
        addRepetition(alive);
        alive->step();
    });
}

void SimulatedMainQueue::sleepMicroseconds(unsigned microseconds) {
    journal_.add("sleep " + std::to_string(microseconds));
    clock_.microseconds += microseconds;
}

void SimulatedMainQueue::advance(double seconds) {
    const auto end = clock_.microseconds + toMicroseconds(seconds);
    while (!steps_.empty() && steps_.begin()->first.first <= end) {
        auto next = steps_.extract(steps_.begin());
        clock_.microseconds = std::max(clock_.microseconds, next.key().first);
        next.mapped()();
    }
    clock_.microseconds = std::max(clock_.microseconds, end);
}

}  // namespace brindle::test
