#include "platform/freedesktop/FreedesktopBundle.h"

#include <QByteArray>
#include <QXmlStreamReader>
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

/// Both kinds end with a mark of their own, so that a file cut short counts as missing like a foreign one.
bool isPicture(const std::string& path) {
    constexpr std::size_t limit = 1U << 20U;
    constexpr std::string_view pngStart("\x89PNG\r\n\x1A\n", 8);
    constexpr std::string_view pngEnd("IEND\xAE\x42\x60\x82", 8);
    const auto content = files::contents(path, limit);
    if (!content || content->starts_with(pngStart))
        return content && content->ends_with(pngEnd);
    QXmlStreamReader drawing(QByteArray::fromRawData(content->data(), static_cast<qsizetype>(content->size())));
    if (!drawing.readNextStartElement() || drawing.name() != QLatin1String("svg"))
        return false;
    drawing.skipCurrentElement();
    return !drawing.hasError();
}

}  // namespace

FreedesktopBundle::FreedesktopBundle() : FreedesktopBundle(ownExecutable(), BRINDLE_SOURCE_RESOURCES) {}

FreedesktopBundle::FreedesktopBundle(std::string executable, const std::string& sourceResources)
    : executable_(std::move(executable)) {
    const auto folder = std::filesystem::path(executable_).parent_path();
    const auto prefix = folder.parent_path();
    prefix_ = prefix.empty() ? "/" : prefix.string();
    for (const auto& relative : {std::string(BRINDLE_INSTALLED_RESOURCES), sourceResources}) {
        const auto place = (folder / relative).lexically_normal();
        if (!resources_ && place.is_absolute() && isFolder(place))
            resources_ = place.string();
    }
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
