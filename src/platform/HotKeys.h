#pragma once

#include <cstdint>
#include <functional>

namespace brindle {

/// Names one hot key among those of a program.
struct HotKeyId {
    std::uint32_t signature;
    std::uint32_t id;
};

/// A class and a kind of event.
struct EventTypeSpec {
    std::uint32_t eventClass;
    std::uint32_t eventKind;
};

using HotKeyRef = std::uint32_t;        ///< a registered hot key; 0: none
using EventHandlerRef = std::uint32_t;  ///< an installed handler; 0: none
constexpr std::int32_t noError = 0;

/// System-wide key combinations. Main thread.
class HotKeys {
public:
    virtual ~HotKeys() = default;

    /// Registers a combination of a virtual key and `hotKeyModifiers`. Returns `noError` and fills `registered`, or the
    /// desktop's reason (on X11 the protocol's error code, 10 when another program holds it) and leaves it alone. It is
    /// all or nothing.
    [[nodiscard]] virtual std::int32_t registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyId id,
                                                      HotKeyRef& registered) = 0;
    virtual void unregisterHotKey(HotKeyRef hotKey) = 0;

    /// The handler runs on the main thread at each press of any registered hot key, not for auto-repeats. It stays
    /// for the life of the process.
    [[nodiscard]] virtual EventHandlerRef installEventHandler(EventTypeSpec type, std::function<void()> handler) = 0;
};

}  // namespace brindle
