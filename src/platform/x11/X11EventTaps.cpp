#include "platform/x11/X11EventTaps.h"

#include <utility>

namespace brindle {

namespace {

class X11EventTap : public EventTap {
public:
    X11EventTap(X11Connection& connection, const X11Keyboard& keyboard, const TapRequest& request,
                std::function<TapVerdict(const TappedKey&)> callback)
        : grabs_(connection, keyboard,
                 {.withControl = (request.flags & eventFlags::control) != 0,
                  .withCommand = (request.flags & eventFlags::command) != 0},
                 OtherModifiers::accepted, [this](const X11KeyPress& press) { deliver(press); }),
          callback_(std::move(callback)) {}

    [[nodiscard]] bool install() { return grabs_.grab() == 0; }

    void enable(bool isEnabled) override {
        grabs_.release();
        // What was free a moment ago may have been taken by another program; the tap then stays silent.
        if (isEnabled)
            static_cast<void>(grabs_.grab());
    }

private:
    void deliver(const X11KeyPress& press) {
        // A grabbed key has left the applications already, whatever the verdict.
        static_cast<void>(callback_({VirtualKey::v, press.flags}));
    }

    X11KeyGrabs grabs_;
    std::function<TapVerdict(const TappedKey&)> callback_;
};

}  // namespace

std::unique_ptr<EventTap> X11EventTaps::create(const TapRequest& request,
                                               std::function<TapVerdict(const TappedKey&)> callback) {
    if (request.key != VirtualKey::v || request.eventsOfInterest != keyDownMask)
        return nullptr;
    auto tap = std::make_unique<X11EventTap>(connection_, keyboard_, request, std::move(callback));
    if (!tap->install())
        return nullptr;
    return tap;
}

}  // namespace brindle
