#include "platform/qt/TrayHosts.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <utility>

namespace brindle {

namespace {

using namespace std::chrono_literals;

constexpr auto settlingTime = 1s;    // in which a panel that has just started registers the rest of itself
constexpr auto answerDeadline = 2s;  // for a watcher that hangs

const QString watcherService = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString watcherPath = QStringLiteral("/StatusNotifierWatcher");

}  // namespace

TrayHosts::TrayHosts(WindowSystem& windowSystem, std::function<void(TrayKind)> onFound)
    : windowSystem_(windowSystem), onFound_(std::move(onFound)) {
    settling_.setSingleShot(true);
    settling_.callOnTimeout([this] { ask(); });
    embeddingTray_ = windowSystem_.onEmbeddingTrayChange([this] { askSoon(); });
    auto bus = QDBusConnection::sessionBus();
    auto* watcher = new QDBusServiceWatcher(watcherService, bus, QDBusServiceWatcher::WatchForRegistration, this);
    connect(watcher, &QDBusServiceWatcher::serviceRegistered, this, &TrayHosts::askSoon);
    bus.connect(watcherService, watcherPath, watcherService, QStringLiteral("StatusNotifierHostRegistered"), this,
                SLOT(askSoon()));
    settling_.start(0s);
}

void TrayHosts::askSoon() {
    settling_.start(settlingTime);
}

void TrayHosts::ask() {
    const auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        finish(false);
        return;
    }
    auto message = QDBusMessage::createMethodCall(
        watcherService, watcherPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    message << watcherService << QStringLiteral("IsStatusNotifierHostRegistered");
    message.setAutoStartService(false);
    const auto call = bus.asyncCall(message, std::chrono::milliseconds(answerDeadline).count());
    auto* answer = new QDBusPendingCallWatcher(call, this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        finish(reply.isValid() && reply.value().variant().toBool());
    });
}

void TrayHosts::finish(bool hasNotifierHost) {
    if (!onFound_ || (!hasNotifierHost && !windowSystem_.hasEmbeddingTray()))
        return;
    embeddingTray_.reset();
    std::exchange(onFound_, nullptr)(hasNotifierHost ? TrayKind::notifier : TrayKind::embedding);
}

}  // namespace brindle
