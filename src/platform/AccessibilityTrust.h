#pragma once

namespace brindle {

enum class TrustPrompt { none, ask };

/// Whether this process may put key events into other applications.
class AccessibilityTrust {
public:
    virtual ~AccessibilityTrust() = default;

    /// Asked of the desktop anew each time. With `TrustPrompt::ask` a desktop that has a prompt may show it while trust
    /// is missing.
    [[nodiscard]] virtual bool isProcessTrusted(TrustPrompt prompt) = 0;
};

}  // namespace brindle
