#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "base/Signal.h"

namespace brindle {

/// The user's stored values by key. Main thread. A write is durable when it returns; one that fails is reported by the
/// store itself (one line when the trouble begins) and costs that write only. A value of another kind than the one
/// asked for counts as absent.
class DefaultsStore {
public:
    virtual ~DefaultsStore() = default;

    [[nodiscard]] virtual std::optional<std::string> data(std::string_view key) const = 0;
    [[nodiscard]] virtual std::optional<std::string> string(std::string_view key) const = 0;
    [[nodiscard]] virtual std::int64_t integer(std::string_view key) const = 0;  ///< 0 when absent
    [[nodiscard]] virtual bool boolean(std::string_view key) const = 0;          ///< false when absent

    virtual void setData(std::string_view key, std::string_view bytes) = 0;
    virtual void setString(std::string_view key, std::string_view text) = 0;
    virtual void setInteger(std::string_view key, std::int64_t number) = 0;
    virtual void setBoolean(std::string_view key, bool flag) = 0;

    /// Calls with the key after each write of this process.
    [[nodiscard]] virtual Subscription onChange(std::function<void(std::string_view key)> observer) = 0;
};

}  // namespace brindle
