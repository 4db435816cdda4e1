#include "platform/qt/QtMainQueue.h"

#include <algorithm>
#include <thread>
#include <utility>

namespace brindle {

namespace {

using std::chrono::nanoseconds;

nanoseconds toNanoseconds(double seconds) {
    constexpr double longest = 1e9;  // seconds; what a count of nanoseconds holds with room to spare
    return std::chrono::round<nanoseconds>(std::chrono::duration<double>(std::clamp(seconds, 0.0, longest)));
}

}  // namespace

/// A repeating step; its subscription empties it.
struct QtMainQueue::Ticker {
    nanoseconds interval;
    Clock::time_point next;
    std::function<void()> step;
};

QtMainQueue::QtMainQueue() {
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    timer_.callOnTimeout([this] { runDueSteps(); });
}

void QtMainQueue::post(std::function<void()> step) {
    after(0, std::move(step));
}

void QtMainQueue::after(double seconds, std::function<void()> step) {
    schedule(Clock::now() + toNanoseconds(seconds), std::move(step));
}

Subscription QtMainQueue::repeat(double seconds, std::function<void()> step) {
    const auto interval = std::max(toNanoseconds(seconds), nanoseconds(std::chrono::milliseconds(1)));
    const auto ticker = std::make_shared<Ticker>(Ticker{interval, Clock::now() + interval, std::move(step)});
    schedule(ticker->next, [this, ticker] { tick(ticker); });
    return Subscription([ticker] { ticker->step = nullptr; });
}

Date QtMainQueue::now() const {
    const std::chrono::duration<double> sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return Date::fromUnixTime(sinceEpoch.count());
}

double QtMainQueue::uptime() const {
    return std::chrono::duration<double>(Clock::now().time_since_epoch()).count();
}

void QtMainQueue::sleepMicroseconds(unsigned microseconds) {
    std::this_thread::sleep_for(std::chrono::microseconds(microseconds));
}

void QtMainQueue::schedule(Clock::time_point deadline, std::function<void()> step) {
    const auto place = steps_.emplace(deadline, std::move(step));
    if (place == steps_.begin())
        armTimer();
}

void QtMainQueue::tick(const std::shared_ptr<Ticker>& ticker) {
    if (!ticker->step)
        return;
    const auto step = ticker->step;  // it may let go of its own subscription
    step();
    const auto missed = (Clock::now() - ticker->next) / ticker->interval;
    ticker->next += ticker->interval * (missed + 1);
    if (ticker->step)
        schedule(ticker->next, [this, ticker] { tick(ticker); });
}

void QtMainQueue::runDueSteps() {
    // What a step posts is due later than this moment: every other event gets its turn in between.
    const auto now = Clock::now();
    while (!steps_.empty() && steps_.begin()->first <= now)
        steps_.extract(steps_.begin()).mapped()();
    armTimer();
}

void QtMainQueue::armTimer() {
    if (steps_.empty())
        return;
    constexpr auto longest = std::chrono::milliseconds(std::chrono::hours(24));
    const auto wait = std::chrono::ceil<std::chrono::milliseconds>(steps_.begin()->first - Clock::now());
    timer_.start(std::clamp(wait, std::chrono::milliseconds(0), longest));
}

}  // namespace brindle
