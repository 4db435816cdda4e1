#include "support/SimulatedStorage.h"

#include <utility>

namespace brindle::test {

template <typename T>
const T* SimulatedDefaults::find(std::string_view key) const {
    const auto found = values.find(key);
    return found == values.end() ? nullptr : std::get_if<T>(&found->second);
}

std::optional<std::string> SimulatedDefaults::data(std::string_view key) const {
    const auto* const stored = find<Data>(key);
    return stored ? std::optional(stored->bytes) : std::nullopt;
}

std::optional<std::string> SimulatedDefaults::string(std::string_view key) const {
    const auto* const stored = find<std::string>(key);
    return stored ? std::optional(*stored) : std::nullopt;
}

std::int64_t SimulatedDefaults::integer(std::string_view key) const {
    const auto* const stored = find<std::int64_t>(key);
    return stored ? *stored : 0;
}

void SimulatedDefaults::set(std::string_view key, Value value) {
    journal_.add((failsWrites ? "cannot store " : "store ") + std::string(key));
    if (failsWrites)
        return;
    values.insert_or_assign(std::string(key), std::move(value));
    changes_.emit(key);
}

}  // namespace brindle::test
