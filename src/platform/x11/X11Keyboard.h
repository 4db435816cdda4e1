#pragma once

#include <xcb/xcb.h>
#include <xkbcommon/xkbcommon.h>

#include <QTimer>
#include <bitset>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "base/Signal.h"
#include "platform/KeyCodes.h"

namespace brindle {

class X11Connection;

/// A set of X key codes.
using KeySet = std::bitset<256>;

/// When a key that stays down comes again.
struct KeyRepeat {
    std::chrono::milliseconds delay;     ///< from its press to the first repeat
    std::chrono::milliseconds interval;  ///< from then on
};

/// A keyboard of the server, by default the core one: which key types what in the layout in use, and which modifier
/// bits mean what. Each has a keymap of its own, which the core one takes over when a key on it is pressed; which
/// layout of the keymap is in use is the core one's to say. This follows all of it. Main thread.
class X11Keyboard {
public:
    explicit X11Keyboard(X11Connection& connection, std::optional<std::uint8_t> device = std::nullopt);
    X11Keyboard(const X11Keyboard&) = delete;
    X11Keyboard& operator=(const X11Keyboard&) = delete;

    /// The key that types "v" in the layout in use, else in another layout of the group, else the key in V's place on
    /// a US keyboard.
    [[nodiscard]] xcb_keycode_t vKey() const;
    /// The first key with that symbol; none when no key has it.
    [[nodiscard]] std::optional<xcb_keycode_t> keyFor(xkb_keysym_t symbol) const;
    /// As the user has set it for the core keyboard; none for a key that does not repeat. Asks the server.
    [[nodiscard]] std::optional<KeyRepeat> repeatOf(xcb_keycode_t key) const;

    [[nodiscard]] std::uint16_t superMask() const { return superMask_; }      ///< 0: no modifier is Super
    [[nodiscard]] std::uint16_t numLockMask() const { return numLockMask_; }  ///< 0: none
    /// The keys of all modifiers but Caps Lock's and Num Lock's.
    [[nodiscard]] const KeySet& modifierKeys() const { return modifierKeys_; }

    /// Calls after any of the above may have changed; many changes at once are one call.
    [[nodiscard]] Subscription onChange(std::function<void()> observer) const {
        return changes_.subscribe(std::move(observer));
    }

private:
    using Context = std::unique_ptr<xkb_context, decltype(&xkb_context_unref)>;
    using Keymap = std::unique_ptr<xkb_keymap, decltype(&xkb_keymap_unref)>;

    void followChanges(std::uint8_t firstXkbEvent);
    void handleXkbEvent(const xcb_generic_event_t& event);
    void reload();
    void readKeymap();
    void readModifiers();
    [[nodiscard]] std::optional<xcb_keycode_t> keyFor(xkb_keysym_t symbol, xkb_layout_index_t layout) const;
    [[nodiscard]] bool types(xcb_keycode_t key, xkb_keysym_t symbol) const;

    X11Connection& connection_;
    std::int32_t device_ = -1;  // negative: the server has no XKB
    Context context_{nullptr, &xkb_context_unref};
    Keymap keymap_{nullptr, &xkb_keymap_unref};
    xkb_layout_index_t layout_ = 0;
    std::uint16_t superMask_ = 0;
    std::uint16_t numLockMask_ = 0;
    KeySet modifierKeys_;
    QTimer reload_;
    Subscription xkbEvents_;
    Subscription mappingEvents_;
    mutable Signal<> changes_;
};

}  // namespace brindle
