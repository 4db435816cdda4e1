#include "platform/freedesktop/BusSingleInstance.h"

#include <QCoreApplication>
#include <optional>

#include "platform/freedesktop/PrivateBus.h"
#include "platform/freedesktop/Scratch.h"

namespace brindle {
namespace {

class BusSingleInstanceTest : public testing::Test {
protected:
    BusSingleInstanceTest() {
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
        qputenv("XDG_DATA_HOME", (scratch_ / "data").c_str());
    }

    /// Another start of the program: this test's program, which then only claims and ends with the answer.
    static InstanceClaim claimInAnotherProcess() {
        QProcess other;
        other.setProcessChannelMode(QProcess::ForwardedChannels);
        other.start(QCoreApplication::applicationFilePath(), {"--claim"});
        EXPECT_TRUE(await([&] { return other.state() == QProcess::NotRunning; }));
        return static_cast<InstanceClaim>(other.exitCode());
    }
    void removeSocket() { std::filesystem::remove(scratch_ / "data/brindle/brindle.socket"); }

    Scratch scratch_;
    BusSingleInstance instance_;
};

TEST_F(BusSingleInstanceTest, TellsTheFirstOverTheBusOrThroughTheSocketAndElseHoldsTheLock) {
    for (const bool hasBus : {true, false}) {
        std::optional<PrivateBus> bus;
        if (hasBus)
            bus.emplace();
        BusSingleInstance first;
        int starts = 0;
        const auto subscription = first.onSecondStart([&] { ++starts; });
        EXPECT_EQ(first.claim(), InstanceClaim::first);
        if (hasBus)
            removeSocket();
        for (int i = 1; i <= 2; ++i) {
            EXPECT_EQ(claimInAnotherProcess(), InstanceClaim::handedOver);
            EXPECT_TRUE(await([&] { return starts == i; }));
        }
        bus.reset();
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
        removeSocket();
        EXPECT_EQ(claimInAnotherProcess(), InstanceClaim::held);
    }
}

TEST_F(BusSingleInstanceTest, IsOneForTheDataWhateverTheBusAndTakesOverFromOneThatEnded) {
    EXPECT_EQ(claimInAnotherProcess(), InstanceClaim::first);
    EXPECT_EQ(instance_.claim(), InstanceClaim::first);
    const PrivateBus bus;
    EXPECT_EQ(claimInAnotherProcess(), InstanceClaim::handedOver);
}

TEST_F(BusSingleInstanceTest, FallsBackWhereTheBusIsGoneAndNoFolderIsWritable) {
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere/bus");
    qputenv("XDG_DATA_HOME", "/proc/nowhere");
    EXPECT_EQ(instance_.claim(), InstanceClaim::first);
}

}  // namespace
}  // namespace brindle
