#include "platform/freedesktop/BusSingleInstance.h"

#include <QDBusError>
#include <QDBusMessage>
#include <utility>

#include "platform/freedesktop/SessionBus.h"

namespace brindle {

namespace {

const auto name = QStringLiteral("org.brindle.Brindle");
const auto path = QStringLiteral("/org/brindle/Brindle");
constexpr int patience = 1000;  // milliseconds for the bus, and for the other instance to answer

enum class NameRequest { granted, taken, failed };

NameRequest requestName(QDBusConnection& bus) {
    constexpr uint doNotQueue = 4;
    constexpr uint primaryOwner = 1;
    constexpr uint exists = 3;
    const auto daemon = QStringLiteral("org.freedesktop.DBus");
    auto request = QDBusMessage::createMethodCall(daemon, QStringLiteral("/org/freedesktop/DBus"), daemon,
                                                  QStringLiteral("RequestName"));
    request << name << doNotQueue;
    const auto reply = bus.call(request, QDBus::Block, patience);
    if (reply.type() != QDBusMessage::ReplyMessage)
        return NameRequest::failed;
    const uint answer = reply.arguments().value(0).toUInt();
    return answer == primaryOwner ? NameRequest::granted : answer == exists ? NameRequest::taken : NameRequest::failed;
}

QDBusError::ErrorType callToggle(QDBusConnection& bus) {
    auto call = QDBusMessage::createMethodCall(name, path, name, QStringLiteral("Toggle"));
    call.setAutoStartService(false);
    const auto reply = bus.call(call, QDBus::Block, patience);
    return reply.type() == QDBusMessage::ReplyMessage ? QDBusError::NoError : QDBusError(reply).type();
}

}  // namespace

InstanceClaim BusSingleInstance::claim() {
    // The lock first, because it lies beside what it guards: two sessions of one user have two buses and one history.
    lock_ = std::make_unique<LockFileInstance>([this] { starts_.emit(); });
    const auto byLock = lock_->claim();
    if (byLock == InstanceClaim::handedOver)
        return byLock;
    auto bus = sessionBus();
    const auto byBus = bus ? claimOn(*bus) : std::nullopt;
    if (byLock == InstanceClaim::first)
        return byBus.value_or(InstanceClaim::first);
    return byBus == InstanceClaim::handedOver ? InstanceClaim::handedOver : InstanceClaim::held;
}

/// None when the bus does not answer.
std::optional<InstanceClaim> BusSingleInstance::claimOn(QDBusConnection& bus) {
    // Before the name: whoever finds the name finds the object.
    bus.registerObject(path, this, QDBusConnection::ExportScriptableSlots);
    constexpr int attempts = 3;  // the other instance may end between the request and the call
    for (int i = 0; i < attempts; ++i) {
        const auto request = requestName(bus);
        if (request == NameRequest::failed)
            return std::nullopt;
        if (request == NameRequest::granted)
            return InstanceClaim::first;
        const auto error = callToggle(bus);
        if (error != QDBusError::ServiceUnknown)
            return error == QDBusError::NoError ? InstanceClaim::handedOver : InstanceClaim::held;
    }
    return InstanceClaim::held;
}

Subscription BusSingleInstance::onSecondStart(std::function<void()> observer) {
    return starts_.subscribe(std::move(observer));
}

void BusSingleInstance::Toggle() {
    starts_.emit();
}

}  // namespace brindle
