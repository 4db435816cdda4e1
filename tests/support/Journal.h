#pragma once

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

namespace brindle::test {

/// A few numbers as printf writes them.
template <typename... Numbers>
std::string printed(const char* format, Numbers... numbers) {
    char text[128];
    std::snprintf(text, sizeof text, format, numbers...);
    return text;
}

inline std::string hexadecimal(std::uint64_t number) {
    return printed("0x%llx", static_cast<unsigned long long>(number));
}

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

    void add(std::string line) { entries_.emplace_back(clock_.microseconds, std::move(line)); }

    /// What happened since the last call of this or `takeTimed`.
    std::vector<std::string> take() {
        std::vector<std::string> lines;
        for (auto& [moment, line] : std::exchange(entries_, {}))
            lines.push_back(std::move(line));
        start_ = clock_.microseconds;
        return lines;
    }

    /// The same, each line after the seconds that had passed since then: "0.030 popover closed".
    std::vector<std::string> takeTimed() {
        for (auto& [moment, line] : entries_)
            line.insert(0, printed("%.3f ", static_cast<double>(moment - start_) / 1e6));
        return take();
    }

private:
    const Clock& clock_;
    std::int64_t start_ = 0;
    std::vector<std::pair<std::int64_t, std::string>> entries_;
};

}  // namespace brindle::test
