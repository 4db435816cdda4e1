#pragma once

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

}  // namespace brindle
