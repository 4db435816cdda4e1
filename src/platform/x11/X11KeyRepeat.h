#pragma once

#include <QTimer>
#include <chrono>
#include <functional>
#include <optional>

#include "platform/x11/X11Keyboard.h"

namespace brindle {

/// Goes on with the repeats of a key that a finger holds when the server ends them because another key is pressed, as
/// the chord of a paste is; the key is released for the finger then. The server's own delay and interval hold. Main
/// thread.
class X11KeyRepeat {
public:
    X11KeyRepeat(X11Connection& connection, const X11Keyboard& keyboard, std::function<void()> step);
    X11KeyRepeat(const X11KeyRepeat&) = delete;
    X11KeyRepeat& operator=(const X11KeyRepeat&) = delete;

    /// A press by the server, its repeats included: it does the work itself until it releases the key.
    void notePress(xcb_keycode_t key, bool isAutoRepeat);
    void noteRelease();

private:
    void repeat();

    X11Connection& connection_;
    const X11Keyboard& keyboard_;
    std::function<void()> step_;
    xcb_keycode_t key_ = 0;
    std::optional<KeyRepeat> rhythm_;
    std::chrono::steady_clock::time_point due_;
    QTimer timer_;
};

}  // namespace brindle
