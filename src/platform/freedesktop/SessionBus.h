#pragma once

#include <QDBusConnection>
#include <optional>

namespace brindle {

/// The bus of the user's session; none when nobody set one up. It is never started from here: the library would run
/// another program for that, and wait for it.
[[nodiscard]] std::optional<QDBusConnection> sessionBus();

/// Keeps the toolkit from starting one for its tray icon: where none is set up, its one connection is made to fail.
/// Once, right after the application object was made.
void neverStartSessionBus();

}  // namespace brindle
