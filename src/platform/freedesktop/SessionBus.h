#pragma once

#include <QDBusConnection>
#include <optional>

namespace brindle {

/// The bus of the user's session; none when nobody set one up. It is never started from here: the library would run
/// another program for that, and wait for it.
[[nodiscard]] std::optional<QDBusConnection> sessionBus();

}  // namespace brindle
