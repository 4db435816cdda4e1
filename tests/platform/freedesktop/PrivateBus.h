#pragma once

#include <QProcess>

#include "platform/Await.h"

namespace brindle {

/// A message bus of the test's own in place of the session's.
class PrivateBus {
public:
    PrivateBus() {
        daemon_.start("dbus-daemon", {"--session", "--nofork", "--nopidfile", "--print-address"});
        if (daemon_.waitForReadyRead(10'000))
            qputenv("DBUS_SESSION_BUS_ADDRESS", daemon_.readLine().trimmed());
    }
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;
    ~PrivateBus() {
        daemon_.terminate();
        daemon_.waitForFinished();
    }

private:
    QProcess daemon_;
};

}  // namespace brindle
