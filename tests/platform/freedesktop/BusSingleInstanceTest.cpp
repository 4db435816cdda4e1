#include "platform/freedesktop/BusSingleInstance.h"

#include <QCoreApplication>
#include <QProcess>

#include "platform/Await.h"
#include "platform/freedesktop/Scratch.h"

namespace brindle {
namespace {

/// Another start of the program: this test's program, which then only claims and ends with the answer.
InstanceClaim claimInAnotherProcess() {
    QProcess other;
    other.setProcessChannelMode(QProcess::ForwardedChannels);
    other.start(QCoreApplication::applicationFilePath(), {"--claim"});
    EXPECT_TRUE(await([&] { return other.state() == QProcess::NotRunning; }));
    return static_cast<InstanceClaim>(other.exitCode());
}

TEST(BusSingleInstanceTest, WithoutABusTellsTheFirstThroughTheSocketAndElseHoldsTheLock) {
    const Scratch scratch;
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    qputenv("XDG_DATA_HOME", (scratch / "data").c_str());
    EXPECT_EQ(claimInAnotherProcess(), InstanceClaim::first);  // and leaves its lock and its socket behind
    BusSingleInstance first;
    int starts = 0;
    const auto subscription = first.onSecondStart([&] { ++starts; });
    EXPECT_EQ(first.claim(), InstanceClaim::first);
    for (int i = 1; i <= 2; ++i) {
        EXPECT_EQ(claimInAnotherProcess(), InstanceClaim::handedOver);
        EXPECT_TRUE(await([&] { return starts == i; }));
    }
    std::filesystem::remove(scratch / "data/brindle/brindle.socket");
    EXPECT_EQ(claimInAnotherProcess(), InstanceClaim::held);
}

}  // namespace
}  // namespace brindle
