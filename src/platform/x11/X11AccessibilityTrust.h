#pragma once

#include "platform/AccessibilityTrust.h"

namespace brindle {

class X11Connection;

/// Trust is a server that takes synthetic events (XTEST) from us. It has no prompt.
class X11AccessibilityTrust : public AccessibilityTrust {
public:
    explicit X11AccessibilityTrust(X11Connection& connection) : connection_(connection) {}

    [[nodiscard]] bool isProcessTrusted(TrustPrompt prompt) override;

private:
    X11Connection& connection_;
};

}  // namespace brindle
