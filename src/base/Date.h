#pragma once

#include <compare>

namespace brindle {

/// A moment of the wall clock: seconds since 2001-01-01 00:00:00 UTC, fractions included.
struct Date {
    /// 2001-01-01 00:00:00 UTC in seconds since 1970-01-01 00:00:00 UTC.
    static constexpr double referenceInUnixTime = 978307200.0;

    double seconds = 0;

    static constexpr Date fromUnixTime(double unixSeconds) { return {unixSeconds - referenceInUnixTime}; }
    [[nodiscard]] constexpr double unixTime() const { return seconds + referenceInUnixTime; }

    /// Earlier than anything that happens: some two thousand years before the reference date.
    static constexpr Date distantPast() { return {-63114076800.0}; }

    friend constexpr auto operator<=>(const Date&, const Date&) = default;
    friend constexpr double operator-(Date later, Date earlier) { return later.seconds - earlier.seconds; }
    friend constexpr Date operator+(Date date, double later) { return {date.seconds + later}; }
};

}  // namespace brindle
