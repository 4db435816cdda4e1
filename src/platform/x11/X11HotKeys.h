#pragma once

#include <map>
#include <memory>
#include <vector>

#include "platform/HotKeys.h"
#include "platform/x11/X11KeyGrabs.h"

namespace brindle {

/// Hot keys as passive grabs. The only key is V.
class X11HotKeys : public HotKeys {
public:
    X11HotKeys(X11Connection& connection, const X11Keyboard& keyboard) : connection_(connection), keyboard_(keyboard) {}

    [[nodiscard]] std::int32_t registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyId id,
                                              HotKeyRef& registered) override;
    void unregisterHotKey(HotKeyRef hotKey) override { grabs_.erase(hotKey); }
    [[nodiscard]] EventHandlerRef installEventHandler(EventTypeSpec type, std::function<void()> handler) override;

private:
    X11Connection& connection_;
    const X11Keyboard& keyboard_;
    std::map<HotKeyRef, std::unique_ptr<X11KeyGrabs>> grabs_;
    HotKeyRef lastHotKey_ = 0;
    std::vector<Subscription> handlers_;
    Signal<> presses_;
};

}  // namespace brindle
