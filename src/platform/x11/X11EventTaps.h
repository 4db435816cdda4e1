#pragma once

#include "platform/EventTaps.h"
#include "platform/x11/X11KeyGrabs.h"

namespace brindle {

/// Event taps as passive grabs of the requested combination in every variant.
class X11EventTaps : public EventTaps {
public:
    X11EventTaps(X11Connection& connection, const X11Keyboard& keyboard)
        : connection_(connection), keyboard_(keyboard) {}

    [[nodiscard]] std::unique_ptr<EventTap> create(const TapRequest& request,
                                                   std::function<TapVerdict(const TappedKey&)> callback) override;

private:
    X11Connection& connection_;
    const X11Keyboard& keyboard_;
};

}  // namespace brindle
