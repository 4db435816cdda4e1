#pragma once

#include <cstdint>
#include <optional>

#include "platform/x11/X11Keyboard.h"

namespace brindle {

/// Which keys are down, and on whose account.
struct X11KeyStates {
    KeySet core;       ///< as applications see it
    KeySet synthetic;  ///< on the keyboard that XTEST presses
    KeySet fingers;    ///< on all other keyboards

    /// Asks the server.
    static X11KeyStates read(X11Connection& connection);
};

/// The keyboard that XTEST presses; none when the server does not tell.
std::optional<std::uint8_t> x11SyntheticKeyboard(X11Connection& connection);

}  // namespace brindle
