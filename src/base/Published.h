#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <utility>

#include "base/Signal.h"

namespace brindle {

/// A value with observers, for the main thread only. Every assignment publishes, also of an equal value, and the
/// observers hear the new value *before* it is stored: during delivery `value()` is still the old one. An assignment
/// made during a delivery takes effect, and is delivered, right after it. An observer may destroy this object.
template <typename T>
class Published {
public:
    Published() = default;
    explicit Published(T initial) { state_->value = std::move(initial); }
    Published(const Published&) = delete;
    Published& operator=(const Published&) = delete;

    [[nodiscard]] const T& value() const { return state_->value; }

    /// What `value()` will be when a delivery under way has ended: what a change must start from.
    [[nodiscard]] const T& latest() const { return state_->pending.empty() ? state_->value : state_->pending.back(); }

    void operator=(T next) {  // NOLINT(misc-unconventional-assign-operator): *this may be gone by then
        const auto state = state_;
        state->pending.push_back(std::move(next));
        if (state->isDelivering)
            return;
        state->isDelivering = true;
        while (!state->pending.empty()) {
            state->changes.emit(state->pending.front());
            state->value = std::move(state->pending.front());
            state->pending.pop_front();
        }
        state->isDelivering = false;
    }

    /// Delivers the current value at once (during a delivery: the one under way), then every later one.
    [[nodiscard]] Subscription subscribe(std::function<void(const T&)> observer) const {
        auto subscription = state_->changes.subscribe(observer);
        // A copy, because the observer may assign or destroy this object.
        const T current = state_->isDelivering ? state_->pending.front() : state_->value;
        observer(current);
        return subscription;
    }

private:
    struct State {
        T value{};
        std::deque<T> pending;  // the front is the one in delivery
        bool isDelivering = false;
        Signal<const T&> changes;
    };
    std::shared_ptr<State> state_ = std::make_shared<State>();
};

}  // namespace brindle
