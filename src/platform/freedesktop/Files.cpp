#include "platform/freedesktop/Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <system_error>

namespace brindle::files {

namespace {

class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (number_ >= 0)
            ::close(number_);
    }
    [[nodiscard]] int get() const { return number_; }

private:
    int number_;
};

std::optional<std::string> upTo(int file, std::size_t count) {
    std::string content(count, '\0');
    std::size_t filled = 0;
    while (filled < count) {
        const ssize_t got = ::read(file, content.data() + filled, count - filled);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return std::nullopt;
        if (got == 0)
            break;
        filled += static_cast<std::size_t>(got);
    }
    content.resize(filled);
    return content;
}

bool writeAll(int file, std::string_view content) {
    while (!content.empty()) {
        const ssize_t put = ::write(file, content.data(), content.size());
        if (put < 0 && errno != EINTR)
            return false;
        content.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(put, 0)));
    }
    return ::fsync(file) == 0;
}

/// The first bytes of a regular file; none when it is something else or cannot be read.
std::optional<std::string> beginning(const std::string& path, std::size_t count) {
    // Not blocking: without a writer, opening a FIFO would wait for one.
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    struct stat status {};
    if (file.get() < 0 || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    // Files of /proc and /sys have a size of their own making, so that a full page is read of them at least.
    constexpr std::size_t page = 4096;
    return upTo(file.get(), std::min(count, std::max(page, static_cast<std::size_t>(status.st_size) + 1)));
}

}  // namespace

std::optional<std::string> contents(const std::string& path, std::size_t limit) {
    auto content = beginning(path, limit + 1);
    if (content && content->size() > limit)
        return std::nullopt;
    return content;
}

std::optional<std::string> makeFolders(const std::string& path) {
    for (std::size_t end = path.find('/', 1);; end = path.find('/', end + 1)) {
        const auto folder = path.substr(0, end);
        if (::mkdir(folder.c_str(), S_IRWXU) == 0) {
            if (::chmod(folder.c_str(), S_IRWXU) != 0)
                return reason(errno);
        } else if (end == std::string::npos) {
            const int error = errno;
            struct stat status {};
            if (::stat(folder.c_str(), &status) != 0)
                return reason(error);
            return S_ISDIR(status.st_mode) ? std::nullopt : std::optional(reason(ENOTDIR));
        }
        if (end == std::string::npos)
            return std::nullopt;
    }
}

std::optional<std::string> replace(const std::string& path, std::string_view content) {
    std::string fresh = path + ".XXXXXX";
    const Descriptor file(::mkostemp(fresh.data(), O_CLOEXEC));  // mode 0600
    if (file.get() < 0)
        return reason(errno);
    if (writeAll(file.get(), content) && ::rename(fresh.c_str(), path.c_str()) == 0)
        return std::nullopt;
    const int error = errno;
    ::unlink(fresh.c_str());
    return reason(error);
}

std::string reason(int error) {
    return std::generic_category().message(error);
}

}  // namespace brindle::files
