#include "platform/x11/X11KeyEvents.h"

#include <xcb/xinput.h>
#include <xcb/xtest.h>
#include <xkbcommon/xkbcommon-keysyms.h>

#include <utility>
#include <vector>

#include "platform/x11/X11Connection.h"
#include "platform/x11/X11KeyStates.h"
#include "platform/x11/X11PasteChords.h"
#include "platform/x11/X11Windows.h"

namespace brindle {

namespace {

// Where the keys are on a PC keyboard, for a layout that does not have the symbol.
constexpr xcb_keycode_t placeOfControl = 37;
constexpr xcb_keycode_t placeOfShift = 50;
constexpr xcb_keycode_t placeOfInsert = 118;

class X11KeyEventSource : public KeyEventSource {};

class X11KeyEvent : public KeyEvent {
public:
    X11KeyEvent(VirtualKey virtualKey, KeyDirection keyDirection) : key(virtualKey), direction(keyDirection) {}

    void setFlags(std::uint64_t /*flags*/) override {}  // the chord has its own modifiers

    VirtualKey key;
    KeyDirection direction;
};

/// While it lives, the server does nothing for any other client.
class ServerGrab {
public:
    explicit ServerGrab(X11Connection& connection) : connection_(connection) { xcb_grab_server(connection_.get()); }
    ServerGrab(const ServerGrab&) = delete;
    ServerGrab& operator=(const ServerGrab&) = delete;
    ~ServerGrab() {
        xcb_ungrab_server(connection_.get());
        connection_.flush();
    }

private:
    X11Connection& connection_;
};

template <typename Step>
void forEach(const KeySet& keys, Step step) {
    for (std::size_t key = 0; key < keys.size(); ++key) {
        if (keys[key])
            step(static_cast<xcb_keycode_t>(key));
    }
}

/// In the order in which they go down.
std::vector<xcb_keycode_t> keysOf(PasteChord chord, const X11Keyboard& keyboard) {
    const auto key = [&](xkb_keysym_t symbol, xcb_keycode_t place) { return keyboard.keyFor(symbol).value_or(place); };
    const auto control = key(XKB_KEY_Control_L, placeOfControl);
    const auto shift = key(XKB_KEY_Shift_L, placeOfShift);
    switch (chord) {
        case PasteChord::controlShiftV:
            return {control, shift, keyboard.vKey()};
        case PasteChord::shiftInsert:
            return {shift, key(XKB_KEY_Insert, placeOfInsert)};
        case PasteChord::controlV:
            break;
    }
    return {control, keyboard.vKey()};
}

}  // namespace

X11KeyEvents::X11KeyEvents(X11Connection& connection, const X11Keyboard& fingers, PrimaryLoan primary)
    : connection_(connection),
      fingers_(fingers),
      keyboard_(connection, x11SyntheticKeyboard(connection)),
      primary_(std::move(primary)) {
    loan_.setSingleShot(true);
    QObject::connect(&loan_, &QTimer::timeout, [this] { primary_.giveBack(); });
    if (connection_.hasExtension(xcb_input_id))
        rawReleases_ = connection_.onGenericEvent(xcb_input_id, XCB_INPUT_RAW_KEY_RELEASE,
                                                  [this](const auto& event) { handleRawRelease(event); });
    // Left behind by a process that was killed with a modifier lent to a finger; each paste would keep it down.
    if (connection_.hasExtension(xcb_test_id))
        letGo(X11KeyStates::read(connection_).synthetic & keyboard_.modifierKeys());
}

X11KeyEvents::~X11KeyEvents() {
    letGo(lentToFingers_);
}

std::unique_ptr<KeyEventSource> X11KeyEvents::createSource(EventSourceState /*state*/) {
    if (!connection_.hasExtension(xcb_test_id))
        return nullptr;
    return std::make_unique<X11KeyEventSource>();
}

std::unique_ptr<KeyEvent> X11KeyEvents::createKeyEvent(KeyEventSource& /*source*/, VirtualKey key,
                                                       KeyDirection direction) {
    if (key != VirtualKey::v && key != VirtualKey::command)
        return nullptr;
    return std::make_unique<X11KeyEvent>(key, direction);
}

void X11KeyEvents::post(EventTapLocation /*location*/, const KeyEvent& event) {
    const auto& posted = static_cast<const X11KeyEvent&>(event);
    // The chord goes out whole when V goes down: between its keys no finger can move and no auto-repeat come through.
    if (posted.key == VirtualKey::v && posted.direction == KeyDirection::down)
        postPaste();
}

void X11KeyEvents::postPaste() {
    const auto window = x11::receiverOfKeys(connection_);
    // The fields of a dialog are the toolkit's, whatever the application does in its own window.
    const auto chord =
        x11::isDialog(connection_, window) ? PasteChord::controlV : pasteChordFor(x11::namesOf(connection_, window));
    if (chord == PasteChord::shiftInsert)
        lendPrimary();
    const auto keys = keysOf(chord, keyboard_);
    // Listened to before the fingers are looked at, so that no release goes unseen.
    rawEvents_ = connection_.selectRawEvents(XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE);
    // Another program that releases a key between our look and our putting it back would leave it down for ever.
    const ServerGrab alone(connection_);
    const auto states = X11KeyStates::read(connection_);
    const KeySet ofPrograms = states.synthetic & ~lentToFingers_ & keyboard_.modifierKeys();
    takeUp(states, keys.back());
    for (auto key = keys.begin(); key != keys.end(); ++key)
        fake(XCB_KEY_PRESS, *key);
    for (auto key = keys.rbegin(); key != keys.rend(); ++key)
        fake(XCB_KEY_RELEASE, *key);
    // At once: a repeat of a held V without its modifiers would be typed.
    // Not where no release could be heard: what we press would stay down.
    putBack(rawEvents_ ? states.fingers & keyboard_.modifierKeys() : KeySet{}, ofPrograms);
}

void X11KeyEvents::takeUp(const X11KeyStates& states, xcb_keycode_t lastKey) {
    // A hot key or tap whose key is still down has the keyboard: the chord would come to us. It must also learn that
    // the key goes up, because the chord ends the server's repeats.
    const KeySet lettersDown = KeySet().set(lastKey).set(fingers_.vKey()) & (states.core | states.synthetic);
    letGo(lettersDown);
    xcb_ungrab_keyboard(connection_.get(), XCB_CURRENT_TIME);
    letGo((states.core | states.synthetic) & keyboard_.modifierKeys());
}

void X11KeyEvents::putBack(const KeySet& ofFingers, const KeySet& ofPrograms) {
    lentToFingers_ = ofFingers & ~ofPrograms;  // what a program pressed it will release
    forEach(ofFingers | ofPrograms, [this](xcb_keycode_t key) { fake(XCB_KEY_PRESS, key); });
    letGoOfReleased();
}

void X11KeyEvents::letGoOfReleased() {
    const KeySet released = lentToFingers_ & ~X11KeyStates::read(connection_).fingers;
    letGo(released);
    // A finger that came back in between has lost its modifier to our release.
    const KeySet back = released & X11KeyStates::read(connection_).fingers;
    forEach(back, [this](xcb_keycode_t key) { fake(XCB_KEY_PRESS, key); });
    lentToFingers_ &= ~released | back;
    if (lentToFingers_.none())
        rawEvents_.reset();
}

void X11KeyEvents::letGo(const KeySet& keys) {
    forEach(keys, [this](xcb_keycode_t key) { fake(XCB_KEY_RELEASE, key); });
    connection_.flush();
}

void X11KeyEvents::handleRawRelease(const xcb_generic_event_t& event) {
    const auto key = reinterpret_cast<const xcb_input_raw_key_release_event_t&>(event).detail;
    if (key >= lentToFingers_.size() || !lentToFingers_[key])
        return;
    const ServerGrab alone(connection_);
    letGoOfReleased();
}

void X11KeyEvents::lendPrimary() {
    primary_.lend();
    loan_.start(primary_.longest);
}

void X11KeyEvents::fake(std::uint8_t type, xcb_keycode_t key) {
    xcb_test_fake_input(connection_.get(), type, key, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, 0);
}

}  // namespace brindle
