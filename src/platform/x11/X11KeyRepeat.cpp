#include "platform/x11/X11KeyRepeat.h"

#include <algorithm>
#include <utility>

#include "platform/x11/X11KeyStates.h"

namespace brindle {

namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

// The server's own repeat is a release with the press right behind it.
constexpr milliseconds pressMayTake{10};

}  // namespace

X11KeyRepeat::X11KeyRepeat(X11Connection& connection, const X11Keyboard& keyboard, std::function<void()> step)
    : connection_(connection), keyboard_(keyboard), step_(std::move(step)) {
    timer_.setTimerType(Qt::PreciseTimer);
    timer_.callOnTimeout([this] { repeat(); });
}

void X11KeyRepeat::notePress(xcb_keycode_t key, bool isAutoRepeat) {
    timer_.stop();
    key_ = key;
    if (!isAutoRepeat)
        rhythm_ = keyboard_.repeatOf(key);
    if (rhythm_)
        due_ = Clock::now() + (isAutoRepeat ? rhythm_->interval : rhythm_->delay);
}

void X11KeyRepeat::noteRelease() {
    if (rhythm_)
        timer_.start(std::max(std::chrono::ceil<milliseconds>(due_ - Clock::now()), pressMayTake));
}

void X11KeyRepeat::repeat() {
    timer_.stop();
    if (!X11KeyStates::read(connection_).fingers[key_])
        return;
    timer_.start(rhythm_->interval);
    step_();
}

}  // namespace brindle
