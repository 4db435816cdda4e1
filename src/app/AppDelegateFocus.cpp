#include "app/AppDelegate.h"

#include <string>

#include "base/Log.h"
#include "platform/Workspace.h"
#include "services/PasteTarget.h"

namespace brindle {

void AppDelegate::handleDidActivateApp(const RunningApplicationHandle& app) {
    if (!isPasteTarget(app))
        return;
    lastAppFocus_ = app;
    previousApp_ = app;
    if (const auto name = app->localizedName())
        log("📌 Updated lastAppFocus via NSWorkspace: " + *name);
}

void AppDelegate::storePreviousApp() {
    const auto frontmost = platform().workspace().frontmostApplication();
    if (frontmost) {
        log("📱 storePreviousApp sees frontmost: " + shortName(frontmost) + " (" +
            frontmost->bundleIdentifier().value_or("no bundle") + ")");
    }
    if (isOwnBundleIdentifier(bundleIdentifier(frontmost))) {
        const auto name = lastAppFocus_ ? lastAppFocus_->localizedName() : std::nullopt;
        log("ℹ️ Frontmost is Brindle; keeping lastAppFocus unchanged: " + name.value_or("nil"));
    } else if (isPasteTarget(frontmost)) {
        lastAppFocus_ = frontmost;
        log("📌 Updated lastAppFocus from frontmost: " + shortName(frontmost));
    }
    previousApp_ = lastAppFocus_;
    if (!previousApp_)
        log("⚠️ previousApp/lastAppFocus is nil after store; paste target may be unavailable.");
}

void AppDelegate::activatePreviousApp() {
    log("🔄 Activating previous app (from lastAppFocus)...");
    closePopover();
    platform().application().deactivate();
    if (!lastAppFocus_ || lastAppFocus_->isTerminated()) {
        log("⚠️ No valid lastAppFocus to activate.");
        return;
    }
    previousApp_ = lastAppFocus_;
    const auto app = lastAppFocus_;  // activation may be reported, and the field move on, before this ends
    const std::string result = app->activate() ? "true" : "false";
    log("✅ Direct activation requested for: " + shortName(app) + " result=" + result);
}

}  // namespace brindle
