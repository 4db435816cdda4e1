#include "platform/freedesktop/FreedesktopLoginItem.h"

#include <unistd.h>

#include <cerrno>
#include <string_view>

#include "platform/Bundle.h"
#include "platform/freedesktop/Files.h"
#include "platform/freedesktop/XdgPaths.h"

namespace brindle {

namespace {

constexpr std::size_t sizeLimit = 1U << 16U;

std::string folder() {
    return xdg::configHome() + "/autostart";
}

std::string file(const Bundle& bundle) {
    return folder() + '/' + bundle.bundleIdentifier().value_or("org.brindle.Brindle") + ".desktop";
}

/// A path as the first argument of Exec: quoted, with a field code's sign doubled, and then escaped once more as every
/// value of a desktop entry is (freedesktop, Desktop Entry, "The Exec key").
std::string execValue(std::string_view path) {
    std::string value = "\"";
    for (const char each : path) {
        if (each == '"' || each == '`' || each == '$')
            (value += "\\\\") += each;
        else if (each == '\\')
            value += "\\\\\\\\";
        else if (each == '%')
            value += "%%";
        else if (each == '\n')
            value += "\\n";
        else if (each == '\t')
            value += "\\t";
        else if (each == '\r')
            value += "\\r";
        else
            value += each;
    }
    return value + '"';
}

std::string entry(const std::string& executable) {
    return "[Desktop Entry]\n"
           "Type=Application\n"
           "Name=Brindle\n"
           "Exec=" +
           execValue(executable) +
           "\n"
           "Icon=org.brindle.Brindle\n"
           "Terminal=false\n"
           "StartupNotify=false\n";
}

}  // namespace

FreedesktopLoginItem::FreedesktopLoginItem(const Bundle& bundle) : bundle_(bundle) {}

std::optional<std::string> FreedesktopLoginItem::registerItem() {
    const auto executable = bundle_.executablePath();
    if (!executable)
        return "The path of the program is unknown";
    const auto content = entry(*executable);
    const auto path = file(bundle_);
    // Asked for at every launch, which need not wait for the disk again.
    if (files::contents(path, sizeLimit) == content)
        return std::nullopt;
    if (auto failure = files::makeFolders(folder()))
        return folder() + ": " + *failure;
    if (auto failure = files::replace(path, content))
        return path + ": " + *failure;
    return std::nullopt;
}

std::optional<std::string> FreedesktopLoginItem::unregisterItem() {
    const auto path = file(bundle_);
    if (::unlink(path.c_str()) == 0 || errno == ENOENT || errno == ENOTDIR)
        return std::nullopt;
    return path + ": " + files::reason(errno);
}

}  // namespace brindle
