#include "services/SettingsManager.h"

#include <string>

#include "base/Log.h"
#include "platform/DefaultsStore.h"
#include "platform/LoginItem.h"
#include "platform/Platform.h"

namespace brindle {

namespace {

constexpr std::string_view maxClipboardItemsKey = "maxClipboardItems";
constexpr std::string_view appThemeKey = "appTheme";
constexpr std::string_view launchAtLoginKey = "launchAtLogin";

constexpr std::int64_t defaultMaxClipboardItems = 50;

std::int64_t storedMaxClipboardItems() {
    const auto count = platform().defaults().integer(maxClipboardItemsKey);
    return count == 0 ? defaultMaxClipboardItems : count;
}

AppTheme storedAppTheme() {
    return appThemeFromRawValue(platform().defaults().string(appThemeKey).value_or("")).value_or(AppTheme::dark);
}

}  // namespace

SettingsManager::SettingsManager()
    : maxClipboardItems_(storedMaxClipboardItems()),
      appTheme_(storedAppTheme()),
      launchAtLogin_(platform().defaults().boolean(launchAtLoginKey)) {
    updateLaunchAtLogin();
}

// What is stored is the published value, not the argument: an observer may have assigned another one meanwhile.

void SettingsManager::setMaxClipboardItems(std::int64_t count) {
    maxClipboardItems_ = count;
    platform().defaults().setInteger(maxClipboardItemsKey, maxClipboardItems_.value());
}

void SettingsManager::setAppTheme(AppTheme theme) {
    appTheme_ = theme;
    platform().defaults().setString(appThemeKey, rawValue(appTheme_.value()));
}

void SettingsManager::setLaunchAtLogin(bool isOn) {
    launchAtLogin_ = isOn;
    platform().defaults().setBoolean(launchAtLoginKey, launchAtLogin_.value());
    updateLaunchAtLogin();
}

void SettingsManager::updateLaunchAtLogin() {
    auto& item = platform().loginItem();
    if (const auto failure = launchAtLogin_.value() ? item.registerItem() : item.unregisterItem())
        log("Failed to update launch at login: " + *failure);
}

}  // namespace brindle
