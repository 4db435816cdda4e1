#include "platform/freedesktop/SettingsPages.h"

#include <algorithm>

#include "platform/Workspace.h"

namespace brindle {

namespace {

struct Page {
    std::string_view desktop;
    std::vector<std::string> command;
};

// As the desktops' own entries for their accessibility page run them.
const Page accessibilityPages[] = {
    {"GNOME", {"gnome-control-center", "universal-access"}},
    {"Unity", {"gnome-control-center", "universal-access"}},
    {"Budgie", {"budgie-control-center", "universal-access"}},
    {"X-Cinnamon", {"cinnamon-settings", "universal-access"}},
    {"KDE", {"systemsettings", "kcm_access"}},
    {"MATE", {"mate-at-properties"}},
    {"XFCE", {"xfce4-accessibility-settings"}},
};

}  // namespace

std::vector<std::string> settingsCommand(std::string_view url, std::string_view currentDesktops) {
    if (url != accessibilitySettingsUrl)
        return {};
    // The list names the most specific desktop first.
    while (!currentDesktops.empty()) {
        const std::string_view desktop = currentDesktops.substr(0, currentDesktops.find(':'));
        const auto* page = std::ranges::find(accessibilityPages, desktop, &Page::desktop);
        if (page != std::end(accessibilityPages))
            return page->command;
        currentDesktops.remove_prefix(std::min(desktop.size() + 1, currentDesktops.size()));
    }
    return {};
}

}  // namespace brindle
