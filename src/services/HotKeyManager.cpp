#include "services/HotKeyManager.h"

#include <string>

#include "base/Log.h"
#include "platform/Platform.h"

namespace brindle {

namespace {

constexpr HotKeyId hotKeyId = {0x11223344, 1};
constexpr EventTypeSpec hotKeyPressed = {0x6B657962, 5};  // 'keyb'

}  // namespace

HotKeyManager& HotKeyManager::shared() {
    static HotKeyManager instance;
    return instance;
}

void HotKeyManager::registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers) {
    auto& keys = platform().hotKeys();
    if (const HotKeyRef former = std::exchange(hotKeyRef_, 0))
        keys.unregisterHotKey(former);
    const std::int32_t status = keys.registerHotKey(keyCode, modifiers, hotKeyId, hotKeyRef_);
    if (status != noError) {
        log("Failed to register hotkey: " + std::to_string(status));
        return;
    }
    if (eventHandler_ == 0)
        eventHandler_ = keys.installEventHandler(hotKeyPressed, [this] { handleHotKeyEvent(); });
}

void HotKeyManager::handleHotKeyEvent() {
    // A copy, because the action may replace itself.
    if (const auto action = onTrigger_)
        action();
}

}  // namespace brindle
