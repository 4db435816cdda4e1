#include "platform/freedesktop/XdgPaths.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <sstream>

namespace brindle::xdg {

namespace {

std::string home() {
    if (const char* set = std::getenv("HOME"); set != nullptr && set[0] == '/')
        return set;
    const passwd* user = getpwuid(getuid());
    return user != nullptr ? user->pw_dir : "/";
}

std::string folder(const char* variable, const char* belowHome) {
    const char* set = std::getenv(variable);
    return set != nullptr && set[0] == '/' ? std::string(set) : home() + belowHome;
}

}  // namespace

std::string dataHome() {
    return folder("XDG_DATA_HOME", "/.local/share");
}

std::string configHome() {
    return folder("XDG_CONFIG_HOME", "/.config");
}

std::vector<std::string> dataDirs() {
    const char* set = std::getenv("XDG_DATA_DIRS");
    std::istringstream list(set != nullptr && set[0] != '\0' ? set : "/usr/local/share:/usr/share");
    std::vector<std::string> folders;
    for (std::string each; std::getline(list, each, ':');) {
        if (each.starts_with('/'))
            folders.push_back(each);
    }
    return folders;
}

}  // namespace brindle::xdg
