#pragma once

#include <functional>
#include <utility>

#include "base/Signal.h"

namespace brindle {

/// A value with observers, for the main thread only. Every assignment publishes, also of an equal value, and the
/// observers hear the new value *before* it is stored: during delivery `value()` is still the old one.
template <typename T>
class Published {
public:
    Published() = default;
    explicit Published(T initial) : value_(std::move(initial)) {}
    Published(const Published&) = delete;
    Published& operator=(const Published&) = delete;

    [[nodiscard]] const T& value() const { return value_; }

    Published& operator=(T next) {
        changes_.emit(next);
        value_ = std::move(next);
        return *this;
    }

    /// Delivers the current value at once, then every later one.
    [[nodiscard]] Subscription subscribe(std::function<void(const T&)> observer) {
        observer(value_);
        return changes_.subscribe(std::move(observer));
    }

private:
    T value_{};
    Signal<const T&> changes_;
};

}  // namespace brindle
