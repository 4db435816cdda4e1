#pragma once

#include <QDeadlineTimer>
#include <QEventLoop>
#include <functional>

namespace brindle {

/// Runs the main loop until the condition holds; false when it does not within five seconds.
inline bool eventually(const std::function<bool()>& condition) {
    const QDeadlineTimer deadline(5000);
    QEventLoop loop;
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        loop.processEvents(QEventLoop::AllEvents, 10);
    }
    return true;
}

}  // namespace brindle
