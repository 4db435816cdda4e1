#pragma once

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QProcess>
#include <QTimer>
#include <functional>

namespace brindle {

/// Runs the event loop until the condition holds; false after ten seconds.
inline bool await(const std::function<bool()>& condition) {
    QEventLoop loop;
    QTimer look;
    const QDeadlineTimer deadline(10'000);
    QObject::connect(&look, &QTimer::timeout, &loop, [&] {
        if (condition() || deadline.hasExpired())
            loop.quit();
    });
    look.start(2);
    loop.exec();
    return condition();
}

/// A message bus of the test's own in place of the session's.
class PrivateBus {
public:
    PrivateBus() {
        daemon_.start(QStringLiteral("dbus-daemon"),
                      {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--nopidfile"),
                       QStringLiteral("--print-address")});
        if (daemon_.waitForReadyRead(10'000))
            address_ = QString::fromUtf8(daemon_.readLine()).trimmed();
        qputenv("DBUS_SESSION_BUS_ADDRESS", address_.toUtf8());
    }
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;
    ~PrivateBus() {
        daemon_.terminate();
        daemon_.waitForFinished();
    }

    [[nodiscard]] const QString& address() const { return address_; }

private:
    QProcess daemon_;
    QString address_;
};

}  // namespace brindle
