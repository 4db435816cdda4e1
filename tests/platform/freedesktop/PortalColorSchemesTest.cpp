#include "platform/freedesktop/PortalColorSchemes.h"

#include <gmock/gmock.h>

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
    uint scheme = 1;
    int questions = 0;

public Q_SLOTS:
    Q_SCRIPTABLE QDBusVariant Read(const QString& group, const QString& key) {
        ++questions;
        const bool isKnown =
            group == QLatin1String("org.freedesktop.appearance") && key == QLatin1String("color-scheme");
        return QDBusVariant(QVariant::fromValue(QDBusVariant(isKnown ? scheme : 0U)));
    }
};

namespace {

const auto path = QStringLiteral("/org/freedesktop/portal/desktop");

void announce(const QDBusConnection& bus, const char* group, const char* key, uint value) {
    auto signal = QDBusMessage::createSignal(path, QStringLiteral("org.freedesktop.portal.Settings"),
                                             QStringLiteral("SettingChanged"));
    signal << QString::fromUtf8(group) << QString::fromUtf8(key) << QVariant::fromValue(QDBusVariant(value));
    EXPECT_TRUE(bus.send(signal));
}

TEST(PortalColorSchemes, FollowsThePortal) {
    const PrivateBus daemon;
    auto bus = QDBusConnection::connectToBus(daemon.address(), QStringLiteral("portal"));
    FakePortal portal;
    ASSERT_TRUE(bus.registerObject(path, &portal, QDBusConnection::ExportScriptableContents));
    ASSERT_TRUE(bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop")));

    ColorScheme palette = ColorScheme::light;
    PortalColorSchemes schemes([&] { return palette; });
    int changes = 0;
    const auto subscription = schemes.onChange([&] { ++changes; });
    EXPECT_EQ(schemes.systemColorScheme(), ColorScheme::light);  // without waiting
    EXPECT_TRUE(await([&] { return changes == 1; }));
    EXPECT_EQ(schemes.systemColorScheme(), ColorScheme::dark);

    announce(bus, "org.freedesktop.appearance", "contrast", 2);
    announce(bus, "other", "color-scheme", 2);
    announce(bus, "org.freedesktop.appearance", "color-scheme", 2);
    EXPECT_TRUE(await([&] { return changes == 2; }));
    EXPECT_EQ(schemes.systemColorScheme(), ColorScheme::light);

    palette = ColorScheme::dark;
    announce(bus, "org.freedesktop.appearance", "color-scheme", 0);
    EXPECT_TRUE(await([&] { return changes == 3; }));
    EXPECT_EQ(schemes.systemColorScheme(), ColorScheme::dark);
    EXPECT_EQ(portal.questions, 1);
}

TEST(PortalColorSchemes, AnswersWithThePaletteWithoutAPortalOrABus) {
    const PortalColorSchemes schemes([] { return ColorScheme::dark; });
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    qunsetenv("XDG_RUNTIME_DIR");
    EXPECT_EQ(schemes.systemColorScheme(), ColorScheme::dark);

    const PrivateBus daemon;
    const PortalColorSchemes second([] { return ColorScheme::dark; });
    EXPECT_EQ(second.systemColorScheme(), ColorScheme::dark);
}

}  // namespace
}  // namespace brindle

#include "PortalColorSchemesTest.moc"
