#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "base/Signal.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11KeyRepeat.h"
#include "platform/x11/X11Keyboard.h"

namespace brindle {

/// The letter V with modifiers held.
struct X11Combination {
    bool withControl = false;
    bool withShift = false;
    bool withCommand = false;
};

/// Which other modifiers may be held beside those of the combination; Caps Lock and Num Lock always may.
enum class OtherModifiers { refused, accepted };

/// What a press of a grabbed combination looked like.
struct X11KeyPress {
    std::uint64_t flags;  ///< `eventFlags`
    bool isAutoRepeat;
};

/// Passive grabs of one combination in all its variants; they follow the keyboard's layout and end with this object.
/// While the key stays down the grab keeps the keyboard, so that nobody else sees its repeats or its release. They go
/// on when the key was released for the finger that holds it and the grab ended with that. Main thread.
class X11KeyGrabs {
public:
    X11KeyGrabs(X11Connection& connection, const X11Keyboard& keyboard, X11Combination combination,
                OtherModifiers others, std::function<void(const X11KeyPress&)> handler);
    X11KeyGrabs(const X11KeyGrabs&) = delete;
    X11KeyGrabs& operator=(const X11KeyGrabs&) = delete;
    ~X11KeyGrabs() { release(); }

    /// Grabs; 0, or the X error. With other modifiers refused it is all or nothing. With others accepted only the bare
    /// combination is needed; variants that another client holds are left to it.
    [[nodiscard]] int grab();
    void release();

private:
    [[nodiscard]] std::uint16_t requiredMask() const;
    [[nodiscard]] std::uint16_t acceptedMask() const;
    [[nodiscard]] std::vector<std::uint16_t> grabVariants();
    void followKeyboard();
    void handlePress(const xcb_key_press_event_t& event);
    void handleRelease(const xcb_key_release_event_t& event);
    void deliver(std::uint16_t state, bool isAutoRepeat);
    void deliverRepeat();

    X11Connection& connection_;
    const X11Keyboard& keyboard_;
    X11Combination combination_;
    OtherModifiers others_;
    std::function<void(const X11KeyPress&)> handler_;

    bool isWanted_ = false;
    xcb_keycode_t key_ = 0;
    std::uint16_t required_ = 0;
    std::uint16_t accepted_ = 0;
    std::vector<std::uint16_t> held_;  // the modifiers of each grab that the server gave us
    xcb_timestamp_t lastRelease_ = 0;
    X11KeyRepeat repeat_;

    Subscription keyboardChanges_;
    Subscription presses_;
    Subscription releases_;
};

}  // namespace brindle
