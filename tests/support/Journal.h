#pragma once

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

namespace brindle::test {

/// The one clock of a simulated desktop.
struct Clock {
    std::int64_t microseconds = 0;
};

inline std::int64_t toMicroseconds(double seconds) {
    return std::llround(seconds * 1e6);
}

/// Everything that happened, in order, one line each.
class Journal {
public:
    explicit Journal(const Clock& clock) : clock_(clock) {}

    void add(std::string line) { entries_.push_back({clock_.microseconds, std::move(line)}); }

    /// What happened since the last call of this or `takeTimed`.
    std::vector<std::string> take() {
        return takeAs([](const Entry& entry) { return entry.line; });
    }

    /// The same, each line after the seconds that had passed since then: "0.030 popover closed".
    std::vector<std::string> takeTimed() {
        return takeAs([start = start_](const Entry& entry) {
            char seconds[32];
            std::snprintf(seconds, sizeof seconds, "%.3f ", static_cast<double>(entry.microseconds - start) / 1e6);
            return seconds + entry.line;
        });
    }

private:
    struct Entry {
        std::int64_t microseconds;
        std::string line;
    };

    template <typename Write>
    std::vector<std::string> takeAs(Write write) {
        std::vector<std::string> lines;
        for (const Entry& entry : std::exchange(entries_, {}))
            lines.push_back(write(entry));
        start_ = clock_.microseconds;
        return lines;
    }

    const Clock& clock_;
    std::int64_t start_ = 0;
    std::vector<Entry> entries_;
};

}  // namespace brindle::test
