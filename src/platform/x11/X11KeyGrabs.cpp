#include "platform/x11/X11KeyGrabs.h"

#include <algorithm>
#include <utility>

namespace brindle {

namespace {

constexpr std::uint16_t allModifiers = 0xff;  // Shift, Lock, Control, Mod1 to Mod5

}  // namespace

X11KeyGrabs::X11KeyGrabs(X11Connection& connection, const X11Keyboard& keyboard, X11Combination combination,
                         OtherModifiers others, std::function<void(const X11KeyPress&)> handler)
    : connection_(connection),
      keyboard_(keyboard),
      combination_(combination),
      others_(others),
      handler_(std::move(handler)),
      repeat_(connection, keyboard, [this] { deliverRepeat(); }) {
    keyboardChanges_ = keyboard_.onChange([this] { followKeyboard(); });
    presses_ = connection_.onEvent(XCB_KEY_PRESS, [this](const auto& event) {
        handlePress(reinterpret_cast<const xcb_key_press_event_t&>(event));
    });
    releases_ = connection_.onEvent(XCB_KEY_RELEASE, [this](const auto& event) {
        handleRelease(reinterpret_cast<const xcb_key_release_event_t&>(event));
    });
}

int X11KeyGrabs::grab() {
    isWanted_ = true;
    key_ = keyboard_.vKey();
    required_ = requiredMask();
    accepted_ = acceptedMask();
    if (combination_.withCommand && keyboard_.superMask() == 0)
        return XCB_MATCH;

    std::vector<std::pair<std::uint16_t, xcb_void_cookie_t>> asked;
    // Every subset of the accepted modifiers, the empty one last; never AnyModifier, which window managers make fail.
    for (std::uint16_t others = accepted_;; others = static_cast<std::uint16_t>((others - 1) & accepted_)) {
        const auto modifiers = static_cast<std::uint16_t>(required_ | others);
        asked.emplace_back(modifiers, xcb_grab_key_checked(connection_.get(), 0, connection_.root(), modifiers, key_,
                                                           XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
        if (others == 0)
            break;
    }
    int status = 0;
    for (const auto& [modifiers, cookie] : asked) {
        const XcbPointer<xcb_generic_error_t> error(xcb_request_check(connection_.get(), cookie));
        if (!error)
            held_.push_back(modifiers);
        else if (others_ == OtherModifiers::refused || modifiers == required_)
            status = error->error_code;
    }
    if (status != 0)
        release();
    return status;
}

void X11KeyGrabs::release() {
    isWanted_ = false;
    for (const auto modifiers : std::exchange(held_, {}))
        xcb_ungrab_key(connection_.get(), key_, connection_.root(), modifiers);
    connection_.flush();
}

std::uint16_t X11KeyGrabs::requiredMask() const {
    std::uint16_t mask = 0;
    if (combination_.withControl)
        mask |= XCB_MOD_MASK_CONTROL;
    if (combination_.withShift)
        mask |= XCB_MOD_MASK_SHIFT;
    if (combination_.withCommand)
        mask |= keyboard_.superMask();
    return mask;
}

std::uint16_t X11KeyGrabs::acceptedMask() const {
    std::uint16_t mask = allModifiers;
    if (others_ == OtherModifiers::refused)
        mask = static_cast<std::uint16_t>(XCB_MOD_MASK_LOCK | keyboard_.numLockMask());
    return static_cast<std::uint16_t>(mask & ~requiredMask());
}

void X11KeyGrabs::followKeyboard() {
    const bool isSame =
        key_ == keyboard_.vKey() && required_ == requiredMask() && accepted_ == acceptedMask() && !held_.empty();
    if (!isWanted_ || isSame)
        return;
    release();
    // Another client may hold the combination in the new layout; the next change tries again.
    static_cast<void>(grab());
    isWanted_ = true;
}

void X11KeyGrabs::handlePress(const xcb_key_press_event_t& event) {
    if (event.detail != key_)
        return;
    // The server repeats a key as a release and a press of the same millisecond.
    const bool isAutoRepeat = event.time == lastRelease_;
    repeat_.notePress(key_, isAutoRepeat);
    deliver(event.state, isAutoRepeat);
}

void X11KeyGrabs::handleRelease(const xcb_key_release_event_t& event) {
    if (event.detail != key_)
        return;
    lastRelease_ = event.time;
    repeat_.noteRelease();
}

void X11KeyGrabs::deliver(std::uint16_t state, bool isAutoRepeat) {
    const auto modifiers = static_cast<std::uint16_t>(state & allModifiers);
    if (std::find(held_.begin(), held_.end(), modifiers) == held_.end())
        return;
    const bool isCommand = (modifiers & keyboard_.superMask()) != 0;
    const bool isControl = (modifiers & XCB_MOD_MASK_CONTROL) != 0;
    handler_({(isCommand ? eventFlags::command : 0) | (isControl ? eventFlags::control : 0), isAutoRepeat});
}

void X11KeyGrabs::deliverRepeat() {
    const XcbPointer<xcb_query_pointer_reply_t> pointer(
        xcb_query_pointer_reply(connection_.get(), xcb_query_pointer(connection_.get(), connection_.root()), nullptr));
    if (pointer)
        deliver(pointer->mask, true);
}

}  // namespace brindle
