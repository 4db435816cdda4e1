#include "platform/freedesktop/SettingsPages.h"

#include <gmock/gmock.h>

#include "platform/Workspace.h"

namespace brindle {

TEST(SettingsPages, OpensTheAccessibilityPageOfTheFirstDesktopThatHasOne) {
    const std::pair<const char*, std::vector<std::string>> pages[] = {
        {"KDE", {"systemsettings", "kcm_access"}},
        {"ubuntu:GNOME", {"gnome-control-center", "universal-access"}},
        {"Budgie:GNOME", {"budgie-control-center", "universal-access"}},
    };
    for (const auto& [desktops, command] : pages)
        EXPECT_EQ(settingsCommand(accessibilitySettingsUrl, desktops), command);
    for (const char* desktops : {"", "LXQt", "kde", "GNOME-Flashback", "::openbox:"})
        EXPECT_THAT(settingsCommand(accessibilitySettingsUrl, desktops), testing::IsEmpty()) << desktops;
    for (const char* url : {"", "settings:sound", "https://brindle.example/"})
        EXPECT_THAT(settingsCommand(url, "KDE"), testing::IsEmpty()) << url;
}

}  // namespace brindle
