#include "platform/freedesktop/FreedesktopBundle.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/freedesktop/Files.h"

namespace brindle {

namespace {

std::string ownExecutable() {
    std::error_code failure;  // without /proc the path is unknown, thus empty
    return std::filesystem::read_symlink("/proc/self/exe", failure).string();
}

bool isFolder(const std::filesystem::path& path) {
    std::error_code ignored;  // what cannot be looked at is none
    return std::filesystem::is_directory(path, ignored);
}

/// A cheap look at the beginning, so that a truncated or foreign file counts as missing.
bool isPicture(const std::string& path) {
    constexpr std::string_view pngSignature("\x89PNG\r\n\x1A\n", 8);
    constexpr std::size_t enough = 4096;  // of an SVG, for what may stand before its root
    const auto start = files::beginning(path, enough);
    return start && (start->starts_with(pngSignature) || start->find("<svg") != std::string::npos);
}

}  // namespace

FreedesktopBundle::FreedesktopBundle() : FreedesktopBundle(ownExecutable(), BRINDLE_SOURCE_RESOURCES) {}

FreedesktopBundle::FreedesktopBundle(std::string executable, std::string sourceResources)
    : executable_(std::move(executable)) {
    const auto prefix = std::filesystem::path(executable_).parent_path().parent_path();
    prefix_ = prefix.empty() ? "/" : prefix.string();
    if (const auto installed = prefix / BRINDLE_INSTALLED_RESOURCES; isFolder(installed))
        resources_ = installed.string();
    else if (isFolder(sourceResources))
        resources_ = std::move(sourceResources);
}

std::optional<std::string> FreedesktopBundle::infoString(std::string_view key) const {
    if (key == "CFBundleShortVersionString")
        return BRINDLE_VERSION;
    if (key == "CFBundleIdentifier")
        return identifier;
    return std::nullopt;
}

std::optional<std::string> FreedesktopBundle::executablePath() const {
    return executable_.empty() ? std::nullopt : std::optional(executable_);
}

std::optional<std::string> FreedesktopBundle::imageNamed(std::string_view name) const {
    for (const char* suffix : {".svg", ".png"}) {
        auto path = resources_.value_or("") + '/' + std::string(name) + suffix;
        if (resources_ && isPicture(path))
            return path;
    }
    return std::nullopt;
}

std::optional<std::string> FreedesktopBundle::symbolNamed(std::string_view name) const {
    return imageNamed("symbols/" + std::string(name));
}

}  // namespace brindle
