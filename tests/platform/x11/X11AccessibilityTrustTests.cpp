#include "platform/x11/X11AccessibilityTrust.h"

#include <gtest/gtest.h>

#include "platform/x11/X11KeyEvents.h"
#include "platform/x11/X11TestDesk.h"

namespace brindle::x11test {
namespace {

TEST(X11AccessibilityTrust, IsWhetherTheServerTakesSyntheticKeys) {
    const auto connection = X11Connection::open();
    EXPECT_TRUE(X11AccessibilityTrust(*connection).isProcessTrusted(TrustPrompt::ask));

    QProcess server;
    server.start("sh", {"-c", "exec Xvfb -displayfd 1 -nolisten tcp -extension XTEST 2>/dev/null"});
    ASSERT_TRUE(await([&] { return server.bytesAvailable() > 0 || server.waitForReadyRead(1); }));
    const QByteArray display = qgetenv("DISPLAY");
    qputenv("DISPLAY", ":" + server.readLine().trimmed());
    const auto without = X11Connection::open();
    qputenv("DISPLAY", display);
    ASSERT_TRUE(without);
    EXPECT_FALSE(X11AccessibilityTrust(*without).isProcessTrusted(TrustPrompt::ask));
    EXPECT_FALSE(X11KeyEvents(*without, {}).createSource(EventSourceState::hidSystem));
    EXPECT_EQ(xcb_connection_has_error(without->get()), 0);
    server.terminate();
    server.waitForFinished();
}

}  // namespace
}  // namespace brindle::x11test
