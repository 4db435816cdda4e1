#include "platform/freedesktop/BusSingleInstance.h"

#include "platform/freedesktop/PrivateBus.h"
#include "platform/freedesktop/Scratch.h"

namespace brindle {
namespace {

/// Another start of the program: this test's program, which then only claims and ends with the answer.
InstanceClaim claimInAnotherProcess() {
    QProcess other;
    other.setProcessChannelMode(QProcess::ForwardedChannels);
    other.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--claim")});
    EXPECT_TRUE(await([&] { return other.state() == QProcess::NotRunning; }));
    return static_cast<InstanceClaim>(other.exitCode());
}

class BusSingleInstanceTest : public testing::Test {
protected:
    BusSingleInstanceTest() {
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
        qputenv("XDG_DATA_HOME", (scratch_ / "data").c_str());
    }

    void expectOneOfTwo() {
        int starts = 0;
        const auto subscription = instance_.onSecondStart([&] { ++starts; });
        EXPECT_EQ(instance_.claim(), InstanceClaim::first);
        EXPECT_EQ(claimInAnotherProcess(), InstanceClaim::handedOver);
        EXPECT_TRUE(await([&] { return starts == 1; }));
        EXPECT_EQ(claimInAnotherProcess(), InstanceClaim::handedOver);
        EXPECT_TRUE(await([&] { return starts == 2; }));
    }

    Scratch scratch_;
    BusSingleInstance instance_;
};

TEST_F(BusSingleInstanceTest, TellsTheFirstOverTheBusWhereTheSocketIsGone) {
    const PrivateBus bus;
    int starts = 0;
    const auto subscription = instance_.onSecondStart([&] { ++starts; });
    EXPECT_EQ(instance_.claim(), InstanceClaim::first);
    std::filesystem::remove(scratch_ / "data/brindle/brindle.socket");
    EXPECT_EQ(claimInAnotherProcess(), InstanceClaim::handedOver);
    EXPECT_TRUE(await([&] { return starts == 1; }));
}

TEST_F(BusSingleInstanceTest, IsOneForTheDataWhateverTheBus) {
    EXPECT_EQ(instance_.claim(), InstanceClaim::first);
    const PrivateBus bus;
    EXPECT_EQ(claimInAnotherProcess(), InstanceClaim::handedOver);
}

TEST_F(BusSingleInstanceTest, TellsTheFirstThroughASocketWithoutABus) {
    expectOneOfTwo();
}

TEST_F(BusSingleInstanceTest, TakesOverFromOneThatEnded) {
    const PrivateBus bus;
    EXPECT_EQ(claimInAnotherProcess(), InstanceClaim::first);
    EXPECT_EQ(instance_.claim(), InstanceClaim::first);
}

TEST_F(BusSingleInstanceTest, FallsBackWhereTheBusIsGoneAndNoFolderIsWritable) {
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere/bus");
    qputenv("XDG_DATA_HOME", "/proc/nowhere");
    EXPECT_EQ(instance_.claim(), InstanceClaim::first);
}

TEST_F(BusSingleInstanceTest, HoldsTheLockAlsoWhereTheSocketIsGone) {
    EXPECT_EQ(instance_.claim(), InstanceClaim::first);
    std::filesystem::remove(scratch_ / "data/brindle/brindle.socket");
    EXPECT_EQ(claimInAnotherProcess(), InstanceClaim::held);
}

}  // namespace
}  // namespace brindle
