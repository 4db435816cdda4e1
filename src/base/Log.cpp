#include "base/Log.h"

#include <limits.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <string>
#include <utility>

namespace brindle {

namespace {
std::function<void(std::string_view)>& sink() {
    static std::function<void(std::string_view)> current;
    return current;
}
}  // namespace

void log(std::string_view line) {
    constexpr std::size_t longestLine = PIPE_BUF - 1;  // as much as is written at once or not at all
    std::string text(line.substr(0, longestLine));
    std::ranges::replace_if(
        text, [](unsigned char c) { return c < 0x20 || c == 0x7F; }, ' ');
    if (sink()) {
        sink()(text);
        return;
    }
    // Asked first, because a full pipe or a stopped terminal would hold up the main thread for as long as it likes.
    pollfd output{STDOUT_FILENO, POLLOUT, 0};
    if (::poll(&output, 1, 0) != 1 || (output.revents & POLLOUT) == 0)
        return;
    text += '\n';
    [[maybe_unused]] const auto written = ::write(STDOUT_FILENO, text.data(), text.size());  // a full disk: as above
}

void setLogSink(std::function<void(std::string_view)> next) {
    sink() = std::move(next);
}

}  // namespace brindle
