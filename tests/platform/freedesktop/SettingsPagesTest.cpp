#include "platform/freedesktop/SettingsPages.h"

#include <gmock/gmock.h>

#include "platform/Workspace.h"

namespace brindle {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(SettingsPages, OpensTheAccessibilityPageOfTheFirstDesktopThatHasOne) {
    EXPECT_THAT(settingsCommand(accessibilitySettingsUrl, "KDE"), ElementsAre("systemsettings", "kcm_access"));
    EXPECT_THAT(settingsCommand(accessibilitySettingsUrl, "ubuntu:GNOME"),
                ElementsAre("gnome-control-center", "universal-access"));
    EXPECT_THAT(settingsCommand(accessibilitySettingsUrl, "Budgie:GNOME"),
                ElementsAre("budgie-control-center", "universal-access"));
}

TEST(SettingsPages, HasNothingForOtherDesktopsAndAddresses) {
    for (const char* desktops : {"", ":", "LXQt", "kde", "GNOME-Flashback", "::openbox:"})
        EXPECT_THAT(settingsCommand(accessibilitySettingsUrl, desktops), IsEmpty()) << desktops;
    for (const char* url : {"", "settings:", "settings:sound", "https://brindle.example/"})
        EXPECT_THAT(settingsCommand(url, "KDE"), IsEmpty()) << url;
}

}  // namespace
}  // namespace brindle
