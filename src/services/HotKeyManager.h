#pragma once

#include <cstdint>
#include <functional>
#include <utility>

#include "platform/HotKeys.h"

namespace brindle {

/// The one global shortcut of the program. Main thread.
class HotKeyManager {
public:
    static HotKeyManager& shared();

    HotKeyManager(const HotKeyManager&) = delete;
    HotKeyManager& operator=(const HotKeyManager&) = delete;

    /// Replaces the registered combination. A refusal is one line in the log with the desktop's status.
    void registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers);

    /// Runs on each press; empty: nothing does.
    void setOnTrigger(std::function<void()> action) { onTrigger_ = std::move(action); }

private:
    HotKeyManager() = default;
    void handleHotKeyEvent();

    EventHandlerRef eventHandler_ = 0;
    std::function<void()> onTrigger_;
    HotKeyRef hotKeyRef_ = 0;
};

}  // namespace brindle
