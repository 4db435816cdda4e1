#include "platform/freedesktop/DefaultsFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <ctime>

#include "platform/freedesktop/Files.h"

namespace brindle::defaultsfile {

namespace {

constexpr std::array companions = {"-wal", "-shm", "-journal"};

/// What keeps a path from being a file of ours; nothing for a path where there is nothing.
std::optional<std::string> obstacleAt(const std::string& path) {
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0)
        return errno == ENOENT ? std::nullopt : std::optional(files::reason(errno));
    if (S_ISLNK(status.st_mode) && ::stat(path.c_str(), &status) != 0)
        return "it is a link that leads nowhere";
    if (S_ISDIR(status.st_mode))
        return files::reason(EISDIR);
    if (!S_ISREG(status.st_mode))
        return "it is not a regular file";
    if (status.st_uid != ::geteuid())
        return "it belongs to somebody else";
    return std::nullopt;
}

std::string datedName(const std::string& path) {
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    localtime_r(&now, &parts);
    std::array<char, 32> date{};
    std::strftime(date.data(), date.size(), ".%Y-%m-%d-%H%M%S", &parts);
    std::string name = path + date.data();
    for (int copy = 2; exists(name); ++copy)
        name = path + date.data() + "-" + std::to_string(copy);
    return name;
}

}  // namespace

std::optional<std::string> obstacle(const std::string& path) {
    auto found = obstacleAt(path);
    for (const char* each : companions) {
        if (!found)
            found = obstacleAt(path + each);
    }
    return found;
}

bool exists(const std::string& path) {
    struct stat status {};
    return ::lstat(path.c_str(), &status) == 0;
}

bool isEmpty(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) != 0 || status.st_size == 0;
}

Identity identity(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 ? Identity(status.st_dev, status.st_ino) : Identity();
}

bool isElsewhere(const std::string& path, const Identity& file) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0)
        return errno == ENOENT;
    return Identity(status.st_dev, status.st_ino) != file;
}

int secure(const std::string& path) {
    const int file = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK, S_IRUSR | S_IWUSR);
    if (file < 0)
        return errno;
    ::fchmod(file, S_IRUSR | S_IWUSR);  // cannot fail on a file of one's own that can be written
    ::close(file);
    for (const char* each : companions)
        ::chmod((path + each).c_str(), S_IRUSR | S_IWUSR);  // mostly there are none
    return 0;
}

std::optional<std::string> moveAside(const std::string& path) {
    const std::string name = datedName(path);
    for (const char* each : companions)
        std::rename((path + each).c_str(), (name + each).c_str());  // mostly there are none
    // What stood in the way may have been a companion alone.
    return std::rename(path.c_str(), name.c_str()) == 0 || !exists(path) ? std::optional(name) : std::nullopt;
}

}  // namespace brindle::defaultsfile
