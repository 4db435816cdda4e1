#include "platform/freedesktop/LockFileInstance.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <utility>

#include "platform/freedesktop/Files.h"
#include "platform/freedesktop/XdgPaths.h"

namespace brindle {

namespace {

constexpr int socketType = SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK;

std::string folder() {
    return xdg::dataHome() + "/brindle";
}

/// None for a path that is longer than a socket's may be.
std::optional<sockaddr_un> address(const std::string& path) {
    sockaddr_un made{};
    made.sun_family = AF_UNIX;
    if (path.size() >= sizeof made.sun_path)
        return std::nullopt;
    std::copy(path.begin(), path.end(), made.sun_path);
    return made;
}

}  // namespace

LockFileInstance::LockFileInstance(std::function<void()> onSecondStart) : onSecondStart_(std::move(onSecondStart)) {}

LockFileInstance::~LockFileInstance() {
    notifier_.reset();
    for (const int each : {socket_, lock_}) {
        if (each >= 0)
            ::close(each);
    }
}

InstanceClaim LockFileInstance::claim() {
    (void)files::makeFolders(folder());  // a failure shows as the lock's
    const auto socket = folder() + "/brindle.socket";
    lock_ = ::open((folder() + "/brindle.lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK, S_IRUSR | S_IWUSR);
    if (lock_ >= 0 && ::flock(lock_, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
        return tell(socket) ? InstanceClaim::handedOver : InstanceClaim::held;
    // Where no file can be made or locked, running unguarded is better than not running.
    if (lock_ >= 0)
        listen(socket);
    return InstanceClaim::first;
}

void LockFileInstance::listen(const std::string& path) {
    const auto place = address(path);
    socket_ = place ? ::socket(AF_UNIX, socketType, 0) : -1;
    if (socket_ < 0)
        return;
    ::unlink(path.c_str());  // whose it was holds no lock any more
    if (::bind(socket_, reinterpret_cast<const sockaddr*>(&*place), sizeof *place) != 0)
        return;
    ::chmod(path.c_str(), S_IRUSR | S_IWUSR);
    notifier_ = std::make_unique<QSocketNotifier>(socket_, QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] {
        char byte = 0;
        if (::recv(socket_, &byte, sizeof byte, 0) >= 0)
            onSecondStart_();
    });
}

bool LockFileInstance::tell(const std::string& path) {
    const auto place = address(path);
    const int sender = place ? ::socket(AF_UNIX, socketType, 0) : -1;
    if (sender < 0)
        return false;
    const char byte = 1;
    const auto sent =
        ::sendto(sender, &byte, sizeof byte, 0, reinterpret_cast<const sockaddr*>(&*place), sizeof *place);
    ::close(sender);
    return sent == sizeof byte;
}

}  // namespace brindle
