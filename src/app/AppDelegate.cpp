#include "app/AppDelegate.h"

#include <utility>

#include "platform/KeyCodes.h"
#include "platform/Workspace.h"
#include "services/ClipboardMonitor.h"
#include "services/CyclingPasteManager.h"
#include "services/HistoryManager.h"
#include "services/HotKeyManager.h"
#include "services/SettingsManager.h"

namespace brindle {

AppDelegate::AppDelegate(MakeContent makeContent) : makeContent_(std::move(makeContent)) {}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching() {
    settingsManager_ = std::make_unique<SettingsManager>();
    historyManager_ = std::make_unique<HistoryManager>(*settingsManager_);
    clipboardMonitor_ = std::make_unique<ClipboardMonitor>(*historyManager_);
    cyclingPasteManager_ = CyclingPasteManager::create(*historyManager_);
    activationObserver_ = platform().workspace().onDidActivateApplication(
        [this](const RunningApplicationHandle& app) { handleDidActivateApp(app); });
    createPopover();
    createStatusItem();
    auto& hotKey = HotKeyManager::shared();
    hotKey.registerHotKey(static_cast<std::uint32_t>(VirtualKey::v), hotKeyModifiers::command | hotKeyModifiers::shift);
    hotKey.setOnTrigger(weakly(&AppDelegate::togglePopoverAfterPaste));
}

void AppDelegate::quitApp() {
    platform().application().terminate();
}

std::function<void()> AppDelegate::weakly(void (AppDelegate::*operation)()) {
    return [weak = weak_from_this(), operation] {
        if (const auto self = weak.lock())
            (self.get()->*operation)();
    };
}

}  // namespace brindle
