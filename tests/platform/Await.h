#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTimer>
#include <functional>

namespace brindle {

/// Runs the main loop until the condition holds; false when it does not within ten seconds.
inline bool await(const std::function<bool()>& condition) {
    QTimer look;
    look.start(2);
    for (const QDeadlineTimer limit(10'000); !condition() && !limit.hasExpired();)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return condition();
}

}  // namespace brindle
