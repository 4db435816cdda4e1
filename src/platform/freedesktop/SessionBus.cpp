#include "platform/freedesktop/SessionBus.h"

#include <sys/stat.h>

#include <cstdlib>
#include <string>

namespace brindle {

namespace {

bool isSetUp() {
    if (const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS"); address != nullptr && address[0] != '\0')
        return true;
    const char* folder = std::getenv("XDG_RUNTIME_DIR");
    struct stat status {};
    return folder != nullptr && ::stat((std::string(folder) + "/bus").c_str(), &status) == 0 &&
           S_ISSOCK(status.st_mode);
}

}  // namespace

std::optional<QDBusConnection> sessionBus() {
    if (!isSetUp())
        return std::nullopt;
    auto bus = QDBusConnection::sessionBus();
    return bus.isConnected() ? std::optional(bus) : std::nullopt;
}

}  // namespace brindle
