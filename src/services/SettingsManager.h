#pragma once

#include <cstdint>

#include "base/Published.h"
#include "services/AppTheme.h"

namespace brindle {

/// The user's settings: read when created, written to the defaults store at every assignment. Main thread.
class SettingsManager {
public:
    /// Reads the store, then makes the login item agree with `launchAtLogin`.
    SettingsManager();
    SettingsManager(const SettingsManager&) = delete;
    SettingsManager& operator=(const SettingsManager&) = delete;

    [[nodiscard]] const Published<std::int64_t>& maxClipboardItems() const { return maxClipboardItems_; }
    [[nodiscard]] const Published<AppTheme>& appTheme() const { return appTheme_; }
    [[nodiscard]] const Published<bool>& launchAtLogin() const { return launchAtLogin_; }

    void setMaxClipboardItems(std::int64_t count);  ///< no bounds are applied
    void setAppTheme(AppTheme theme);
    void setLaunchAtLogin(bool isOn);

    /// Registers or unregisters the login item; a refusal is one line in the log and changes nothing.
    void updateLaunchAtLogin();

private:
    Published<std::int64_t> maxClipboardItems_;
    Published<AppTheme> appTheme_;
    Published<bool> launchAtLogin_;
};

}  // namespace brindle
