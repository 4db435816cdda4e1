#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace brindle {

/// A 128-bit identity (RFC 4122). The default value is all zeros.
class Uuid {
public:
    /// A fresh random one (version 4).
    static Uuid generate();

    /// Reads the canonical form of 36 characters in either letter case; anything else gives nothing.
    static std::optional<Uuid> parse(std::string_view text);

    /// The canonical form: 36 characters, five groups of upper-case hexadecimal digits.
    [[nodiscard]] std::string text() const;

    // The checker takes the standard's own comparison of integers with 0 for a null pointer.
    friend auto operator<=>(const Uuid&, const Uuid&) = default;  // NOLINT(modernize-use-nullptr)

private:
    std::array<std::uint8_t, 16> bytes_{};
};

}  // namespace brindle
