#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <iterator>
#include <memory>
#include <utility>
#include <vector>

namespace brindle {

/// A place in somebody's list of listeners. Move-only; letting go of it ends the delivery, also from within a
/// delivery. May outlive what it subscribed to. An empty one does nothing.
class [[nodiscard]] Subscription {
public:
    Subscription() = default;
    explicit Subscription(std::function<void()> cancel) : cancel_(std::move(cancel)) {}
    Subscription(Subscription&& other) noexcept : cancel_(std::exchange(other.cancel_, nullptr)) {}
    Subscription& operator=(Subscription&& other) noexcept {
        if (this != &other) {
            reset();
            cancel_ = std::exchange(other.cancel_, nullptr);
        }
        return *this;
    }
    ~Subscription() { reset(); }

    /// Ends the delivery now. Safe to call twice.
    void reset() {
        if (const auto cancel = std::exchange(cancel_, nullptr))
            cancel();
    }

    explicit operator bool() const { return static_cast<bool>(cancel_); }

private:
    std::function<void()> cancel_;
};

/// Calls its listeners in the order in which they subscribed. One thread only. Subscribing, leaving and destroying the
/// signal during a delivery are safe: who leaves is not called any more, who joins is called from the next one on.
template <typename... Arguments>
class Signal {
public:
    using Listener = std::function<void(Arguments...)>;

    Signal() = default;
    Signal(const Signal&) = delete;
    Signal& operator=(const Signal&) = delete;

    [[nodiscard]] Subscription subscribe(Listener listener) const {
        auto slot = std::make_shared<Slot>(Slot{std::move(listener), true});
        state_->slots.push_back(slot);
        return Subscription([state = std::weak_ptr<State>(state_), slot] {
            slot->isActive = false;
            if (const auto alive = state.lock())
                alive->sweep();
        });
    }

    void emit(Arguments... arguments) {
        const auto state = state_;  // a listener may destroy this signal
        ++state->deliveries;
        const std::size_t count = state->slots.size();
        for (std::size_t i = 0; i < count; ++i) {
            const auto slot = state->slots[i];
            if (slot->isActive)
                slot->listener(arguments...);
        }
        --state->deliveries;
        state->sweep();
    }

private:
    struct Slot {
        Listener listener;
        bool isActive;
    };
    struct State {
        std::vector<std::shared_ptr<Slot>> slots;
        int deliveries = 0;

        void sweep() {
            const auto isActive = [](const auto& slot) { return slot->isActive; };
            if (deliveries != 0 || std::all_of(slots.begin(), slots.end(), isActive))
                return;
            const auto live = std::stable_partition(slots.begin(), slots.end(), isActive);
            // Destroyed last, outside the list: a listener may own a subscription to this very signal.
            const std::vector<std::shared_ptr<Slot>> gone(std::make_move_iterator(live),
                                                          std::make_move_iterator(slots.end()));
            slots.erase(live, slots.end());
        }
    };
    std::shared_ptr<State> state_ = std::make_shared<State>();
};

}  // namespace brindle
