#pragma once

#include <QProcess>
#include <QTemporaryDir>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/x11/X11Connection.h"
#include "platform/x11/X11Keyboard.h"
#include "platform/x11/X11TestPeer.h"

namespace brindle::x11test {

// Key codes of a PC keyboard.
constexpr xcb_keycode_t keyA = 38;
constexpr xcb_keycode_t keyV = 55;
constexpr xcb_keycode_t keyDvorakV = 60;
constexpr xcb_keycode_t keyControlLeft = 37;
constexpr xcb_keycode_t keyControlRight = 105;
constexpr xcb_keycode_t keyShiftLeft = 50;
constexpr xcb_keycode_t keyShiftRight = 62;
constexpr xcb_keycode_t keyAltLeft = 64;
constexpr xcb_keycode_t keySuperLeft = 133;
constexpr xcb_keycode_t keyCapsLock = 66;
constexpr xcb_keycode_t keyNumLock = 77;

/// The hands of a user: a keyboard of the server that is not the one of XTEST. Held keys repeat.
class Hands {
public:
    Hands();
    ~Hands();

    void press(xcb_keycode_t key) { moveKey(key, true); }
    void release(xcb_keycode_t key) { moveKey(key, false); }
    void press(const std::vector<xcb_keycode_t>& keys) {
        for (const auto key : keys)
            press(key);
    }
    void release(const std::vector<xcb_keycode_t>& keys) {
        for (const auto key : keys)
            release(key);
    }
    void tap(xcb_keycode_t key) { chord({key}); }
    void chord(const std::vector<xcb_keycode_t>& keys) {
        press(keys);
        release({keys.rbegin(), keys.rend()});
    }

    [[nodiscard]] int keyboard() const { return keyboard_; }
    [[nodiscard]] const KeySet& held() const { return held_; }

private:
    void moveKey(xcb_keycode_t key, bool isDown);

    std::unique_ptr<X11Connection> connection_ = X11Connection::open();
    std::uint8_t keyboard_;
    KeySet held_;
};

struct WindowSpec {
    std::string windowClass = "target";
    std::optional<std::uint32_t> process{};
    std::vector<std::string> types{};
    std::vector<std::string> states{};
    xcb_window_t transientFor = XCB_WINDOW_NONE;
    bool isOverrideRedirect = false;
};

/// A window of another program that remembers the keys it was sent.
class OtherWindow {
public:
    struct Key {
        bool isPress;
        xcb_keycode_t key;
        unsigned state;
        unsigned layout = 0;  ///< of the group, as the application reads the key
        friend bool operator==(const Key&, const Key&) = default;
    };

    explicit OtherWindow(const WindowSpec& spec = {});
    ~OtherWindow();

    void show();
    void hide();
    void focus();  ///< as a program without a window manager does

    [[nodiscard]] xcb_window_t id() const { return window_; }
    [[nodiscard]] bool hasFocus();
    [[nodiscard]] const std::vector<Key>& keys() const { return keys_; }
    [[nodiscard]] std::vector<Key> presses(xcb_keycode_t key) const;
    void forgetKeys() { keys_.clear(); }
    [[nodiscard]] X11Connection& connection() { return *connection_; }

private:
    void change(const char* property, xcb_atom_t type, std::uint8_t format, std::size_t count, const void* data);
    void setAtoms(const char* property, const std::vector<std::string>& names);
    void note(const xcb_generic_event_t& event, bool isPress);

    std::unique_ptr<X11Connection> connection_ = X11Connection::open();
    X11Keyboard keyboard_{*connection_};  // only who knows of layouts is told of them
    xcb_window_t window_;
    bool isMapped_ = false;
    std::vector<Key> keys_;
    std::vector<Subscription> events_;
};

/// openbox without key bindings of its own.
class WindowManager {
public:
    WindowManager();
    ~WindowManager();

private:
    QTemporaryDir folder_;
    QProcess process_;
};

/// Sets the layout for all keyboards, as a user does in a running session.
/// With several, Caps Lock goes to the next.
void setLayout(const std::string& layout);

/// The modifiers and other keys that are down on the core keyboard.
KeySet keysDown(X11Connection& connection);

}  // namespace brindle::x11test
