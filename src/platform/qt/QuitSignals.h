#pragma once

#include <array>
#include <functional>

class QSocketNotifier;

namespace brindle {

/// Turns the signals that ask a program to end (SIGTERM, SIGHUP, SIGINT) into a call on the main thread. A second
/// signal ends the process the hard way. At most one at a time.
class QuitSignals {
public:
    explicit QuitSignals(std::function<void()> onQuit);
    QuitSignals(const QuitSignals&) = delete;
    QuitSignals& operator=(const QuitSignals&) = delete;
    ~QuitSignals();

private:
    std::array<int, 2> pipe_{-1, -1};
    QSocketNotifier* notifier_ = nullptr;
};

}  // namespace brindle
