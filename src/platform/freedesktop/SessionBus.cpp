#include "platform/freedesktop/SessionBus.h"

#include <sys/stat.h>

#include <cstdlib>
#include <string>

namespace brindle {

namespace {

constexpr const char* addressVariable = "DBUS_SESSION_BUS_ADDRESS";

bool isSetUp() {
    if (const char* address = std::getenv(addressVariable); address != nullptr && address[0] != '\0')
        return true;
    const char* folder = std::getenv("XDG_RUNTIME_DIR");
    struct stat status {};
    return folder != nullptr && ::stat((std::string(folder) + "/bus").c_str(), &status) == 0 &&
           S_ISSOCK(status.st_mode);
}

}  // namespace

void neverStartSessionBus() {
    if (isSetUp())
        return;
    ::setenv(addressVariable, "disabled:", 1);
    (void)QDBusConnection::sessionBus();  // the toolkit keeps the connection, here the failed one
    ::unsetenv(addressVariable);
}

std::optional<QDBusConnection> sessionBus() {
    if (!isSetUp())
        return std::nullopt;
    auto bus = QDBusConnection::sessionBus();
    return bus.isConnected() ? std::optional(bus) : std::nullopt;
}

}  // namespace brindle
