#include "platform/qt/QuitSignals.h"

#include <fcntl.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <atomic>
#include <csignal>
#include <utility>

namespace brindle {

namespace {

constexpr std::array quitSignals{SIGTERM, SIGHUP, SIGINT};

std::atomic<int> writingEnd{-1};

void onSignal(int /*signal*/) {
    const char byte = 0;
    // A full pipe holds enough requests to end already.
    [[maybe_unused]] const auto written = write(writingEnd, &byte, 1);
}

void handleWith(void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
    for (const int signal : quitSignals)
        sigaction(signal, &action, nullptr);
}

}  // namespace

QuitSignals::QuitSignals(std::function<void()> onQuit) {
    if (pipe2(pipe_.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return;  // without one the signals keep ending the process at once
    writingEnd = pipe_[1];
    notifier_ = new QSocketNotifier(pipe_[0], QSocketNotifier::Read);
    QObject::connect(notifier_, &QSocketNotifier::activated, notifier_, [this, onQuit = std::move(onQuit)] {
        char byte = 0;
        if (read(pipe_[0], &byte, 1) == 1)
            onQuit();
    });
    handleWith(onSignal);
}

QuitSignals::~QuitSignals() {
    if (notifier_ == nullptr)
        return;
    handleWith(SIG_DFL);
    delete notifier_;
    close(pipe_[0]);
    close(pipe_[1]);
}

}  // namespace brindle
