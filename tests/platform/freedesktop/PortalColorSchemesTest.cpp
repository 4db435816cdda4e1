#include "platform/freedesktop/PortalColorSchemes.h"

#include <gmock/gmock.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QObject>

#include "platform/freedesktop/PrivateBus.h"

namespace brindle {

/// The portal as far as this program asks it.
class FakePortal : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    int questions = 0;

public Q_SLOTS:
    Q_SCRIPTABLE QDBusVariant Read(const QString& group, const QString& key) {
        ++questions;
        const bool isKnown = group == "org.freedesktop.appearance" && key == "color-scheme";
        return QDBusVariant(QVariant::fromValue(QDBusVariant(isKnown ? 1U : 0U)));
    }
};

namespace {

TEST(PortalColorSchemes, FollowsThePortal) {
    const PrivateBus daemon;
    auto bus = QDBusConnection::connectToBus(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"), "portal");
    const QString path = "/org/freedesktop/portal/desktop";
    FakePortal portal;
    ASSERT_TRUE(bus.registerObject(path, &portal, QDBusConnection::ExportScriptableContents));
    ASSERT_TRUE(bus.registerService("org.freedesktop.portal.Desktop"));
    const auto announce = [&](const char* group, const char* key, uint value) {
        auto signal = QDBusMessage::createSignal(path, "org.freedesktop.portal.Settings", "SettingChanged");
        signal << group << key << QVariant::fromValue(QDBusVariant(value));
        EXPECT_TRUE(bus.send(signal));
    };

    ColorScheme palette = ColorScheme::light;
    PortalColorSchemes schemes([&] { return palette; });
    int changes = 0;
    const auto subscription = schemes.onChange([&] { ++changes; });
    EXPECT_EQ(schemes.systemColorScheme(), ColorScheme::light);  // without waiting
    EXPECT_TRUE(await([&] { return changes == 1; }));
    EXPECT_EQ(schemes.systemColorScheme(), ColorScheme::dark);

    announce("org.freedesktop.appearance", "contrast", 2);
    announce("other", "color-scheme", 2);
    announce("org.freedesktop.appearance", "color-scheme", 2);
    EXPECT_TRUE(await([&] { return changes == 2; }));
    EXPECT_EQ(schemes.systemColorScheme(), ColorScheme::light);

    palette = ColorScheme::dark;
    schemes.fallbackChanged();
    EXPECT_EQ(changes, 2) << "the portal decides";
    announce("org.freedesktop.appearance", "color-scheme", 0);
    EXPECT_TRUE(await([&] { return changes == 3; }));
    EXPECT_EQ(schemes.systemColorScheme(), ColorScheme::dark);
    palette = ColorScheme::light;
    schemes.fallbackChanged();
    schemes.fallbackChanged();
    EXPECT_EQ(changes, 4) << "the portal has no preference";
    EXPECT_EQ(portal.questions, 1);
}

}  // namespace
}  // namespace brindle

#include "PortalColorSchemesTest.moc"
