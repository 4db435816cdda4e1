#include "base/Log.h"

#include <cstdio>
#include <utility>

namespace brindle {

namespace {
std::function<void(std::string_view)>& sink() {
    static std::function<void(std::string_view)> current;
    return current;
}
}  // namespace

void log(std::string_view line) {
    if (sink()) {
        sink()(line);
        return;
    }
    // A closed or full standard output costs the line, never the program.
    std::fwrite(line.data(), 1, line.size(), stdout);
    std::fputc('\n', stdout);
    std::fflush(stdout);
}

void setLogSink(std::function<void(std::string_view)> next) {
    sink() = std::move(next);
}

}  // namespace brindle
