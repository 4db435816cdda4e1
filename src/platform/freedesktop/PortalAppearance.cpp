#include "platform/freedesktop/PortalAppearance.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <utility>

#include "platform/freedesktop/SessionBus.h"

namespace brindle {

namespace {

const auto service = QStringLiteral("org.freedesktop.portal.Desktop");
const auto path = QStringLiteral("/org/freedesktop/portal/desktop");
const auto interface = QStringLiteral("org.freedesktop.portal.Settings");
const auto appearance = QStringLiteral("org.freedesktop.appearance");
const auto colorScheme = QStringLiteral("color-scheme");

}  // namespace

PortalAppearance::PortalAppearance(std::function<void()> changed) : changed_(std::move(changed)) {
    auto bus = sessionBus();
    if (!bus)
        return;
    qRegisterMetaType<QDBusVariant>();  // the slot's types are looked up by name
    bus->connect(service, path, interface, QStringLiteral("SettingChanged"), this,
                 SLOT(settingChanged(QString, QString, QDBusVariant)));
    // Every version of the portal has "Read"; it wraps the value twice.
    auto question = QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("Read"));
    question << appearance << colorScheme;
    auto* watcher = new QDBusPendingCallWatcher(bus->asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (!reply.isError())
            take(reply.value().variant());
        watcher->deleteLater();
    });
}

void PortalAppearance::settingChanged(const QString& group, const QString& key, const QDBusVariant& value) {
    if (group == appearance && key == colorScheme)
        take(value.variant());
}

void PortalAppearance::take(const QVariant& value) {
    constexpr uint dark = 1;
    constexpr uint light = 2;
    QVariant inner = value;
    while (inner.canConvert<QDBusVariant>())
        inner = inner.value<QDBusVariant>().variant();
    const uint number = inner.toUInt();
    const auto before = std::exchange(scheme_, number == dark    ? std::optional(ColorScheme::dark)
                                               : number == light ? std::optional(ColorScheme::light)
                                                                 : std::nullopt);
    if (scheme_ != before)
        changed_();
}

}  // namespace brindle
