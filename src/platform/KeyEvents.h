#pragma once

#include <cstdint>
#include <memory>

#include "platform/KeyCodes.h"

namespace brindle {

enum class EventSourceState { hidSystem = 1 };
enum class EventTapLocation { hid = 0, session = 1 };
enum class KeyDirection { down, up };

/// Where key events claim to come from; it lives for one run of posting. When the run's last `post` returns, nothing
/// that it pressed is down and the applications have the modifiers that fingers hold; destroying it adds nothing.
class KeyEventSource {
public:
    KeyEventSource() = default;
    KeyEventSource(const KeyEventSource&) = delete;
    KeyEventSource& operator=(const KeyEventSource&) = delete;
    virtual ~KeyEventSource() = default;
};

/// One synthetic press or release.
class KeyEvent {
public:
    virtual ~KeyEvent() = default;
    virtual void setFlags(std::uint64_t flags) = 0;
};

/// Synthetic key events into whatever application has the focus. Main thread.
class KeyEvents {
public:
    virtual ~KeyEvents() = default;

    [[nodiscard]] virtual std::unique_ptr<KeyEventSource> createSource(EventSourceState state) = 0;  ///< null: refused
    [[nodiscard]] virtual std::unique_ptr<KeyEvent> createKeyEvent(KeyEventSource& source, VirtualKey key,
                                                                   KeyDirection direction) = 0;  ///< null: refused

    /// Posts an event that `createKeyEvent` made; the server has it when this returns. Command and V together reach the
    /// application as the chord that pastes there, whatever keys the user's fingers hold meanwhile: a backend may hold
    /// the modifier back and send the whole chord at V, so that no finger moves between its keys.
    virtual void post(EventTapLocation location, const KeyEvent& event) = 0;
};

}  // namespace brindle
