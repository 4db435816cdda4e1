#pragma once

#include <xcb/xcb.h>

#include <QTimer>
#include <functional>

#include "base/Signal.h"
#include "platform/KeyEvents.h"
#include "platform/x11/X11Keyboard.h"

namespace brindle {

class X11Connection;
struct X11KeyStates;

/// How the PRIMARY selection is made to hold the pasteboard's text for a moment, and given back.
struct PrimaryLoan {
    std::function<void()> lend;
    std::function<void()> giveBack;
    /// Milliseconds. A busy or stopped application asks for the text when it goes on; nobody waits to get it back.
    int longest = 30'000;
};

/// Key events through XTEST: V's press is the whole chord that pastes in the application in front, and the only event
/// that goes out. Modifiers that fingers hold meanwhile, here or through a program that presses keys for somebody
/// elsewhere, are taken up for the chord and put down again right after it.
class X11KeyEvents : public KeyEvents {
public:
    /// `fingers` is the keyboard that shortcuts are pressed on.
    X11KeyEvents(X11Connection& connection, const X11Keyboard& fingers, PrimaryLoan primary);
    ~X11KeyEvents() override;

    [[nodiscard]] std::unique_ptr<KeyEventSource> createSource(EventSourceState state) override;
    [[nodiscard]] std::unique_ptr<KeyEvent> createKeyEvent(KeyEventSource& source, VirtualKey key,
                                                           KeyDirection direction) override;
    void post(EventTapLocation location, const KeyEvent& event) override;

private:
    void postPaste();
    void takeUp(const X11KeyStates& states, xcb_keycode_t lastKey);
    void putBack(const KeySet& ofFingers, const KeySet& ofPrograms);
    void letGo(const KeySet& keys);
    void letGoOfReleased();
    void handleRawRelease(const xcb_generic_event_t& event);
    void lendPrimary();
    void fake(std::uint8_t type, xcb_keycode_t key);

    X11Connection& connection_;
    const X11Keyboard& fingers_;
    X11Keyboard keyboard_;  // the one that XTEST presses, whose layout the chord is read in
    PrimaryLoan primary_;
    QTimer loan_;
    KeySet lentToFingers_;  // pressed on the XTEST keyboard because fingers hold them
    Subscription rawEvents_;
    Subscription rawReleases_;
};

}  // namespace brindle
