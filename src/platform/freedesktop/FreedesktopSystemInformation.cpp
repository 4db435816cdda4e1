#include "platform/freedesktop/FreedesktopSystemInformation.h"

#include <sys/utsname.h>

#include <algorithm>
#include <charconv>
#include <optional>
#include <sstream>
#include <utility>

#include "base/Unicode.h"
#include "platform/freedesktop/Files.h"

namespace brindle {

namespace {

constexpr std::size_t sizeLimit = 1U << 16U;

utsname kernel() {
    utsname names{};
    ::uname(&names);  // fails for a bad pointer alone
    return names;
}

/// "12", "22.04" or "6.1.0-13"; none unless a number comes first.
std::optional<SystemVersion> parsedVersion(std::string_view text) {
    SystemVersion version;
    const char* const end = text.data() + text.size();
    const char* at = text.data();
    for (int* part : {&version.major, &version.minor, &version.patch}) {
        const auto [rest, failure] = std::from_chars(at, end, *part);
        if (failure != std::errc() && part == &version.major)
            return std::nullopt;
        if (failure != std::errc() || rest == end || *rest != '.')
            break;
        at = rest + 1;
    }
    return version;
}

/// A value of os-release, which has the quoting of a shell.
std::string unquoted(std::string_view value) {
    const bool isQuoted = value.size() >= 2 && (value[0] == '"' || value[0] == '\'') && value.back() == value[0];
    if (!isQuoted)
        return std::string(value);
    std::string text;
    const auto inner = value.substr(1, value.size() - 2);
    for (std::size_t i = 0; i < inner.size(); ++i) {
        if (value[0] == '"' && inner[i] == '\\' && i + 1 < inner.size())
            ++i;
        text += inner[i];
    }
    return text;
}

}  // namespace

FreedesktopSystemInformation::FreedesktopSystemInformation(std::string root) : root_(std::move(root)) {}

SystemVersion FreedesktopSystemInformation::operatingSystemVersion() const {
    const auto distribution = parsedVersion(release("VERSION_ID"));
    // Debian says only "12" there; the point release is elsewhere.
    const auto debian = parsedVersion(line("/etc/debian_version"));
    if (distribution && debian && release("ID") == "debian" && debian->major == distribution->major)
        return *debian;
    return distribution.value_or(parsedVersion(kernel().release).value_or(SystemVersion{}));
}

std::string FreedesktopSystemInformation::operatingSystemVersionString() const {
    const auto pretty = release("PRETTY_NAME");
    const auto names = kernel();
    return (pretty.empty() ? "" : pretty + ", ") + names.sysname + " " + names.release + " (Build " + names.release +
           ")";
}

std::string FreedesktopSystemInformation::hardwareModel() const {
    const auto vendor = line("/sys/class/dmi/id/sys_vendor");
    auto model = line("/sys/class/dmi/id/product_name");
    if (!model.empty())
        return vendor.empty() || model.starts_with(vendor) ? model : vendor + " " + model;
    model = line("/sys/firmware/devicetree/base/model");
    return model.empty() ? kernel().machine : model;
}

/// The first line of a file, fit to be shown.
std::string FreedesktopSystemInformation::line(const char* path) const {
    auto text = files::contents(root_ + path, sizeLimit).value_or("");
    text.resize(std::min({text.size(), text.find('\n'), text.find('\0')}));
    return std::string(unicode::trimmed(unicode::repaired(std::move(text))));
}

std::string FreedesktopSystemInformation::release(std::string_view key) const {
    auto text = files::contents(root_ + "/etc/os-release", sizeLimit);
    if (!text)
        text = files::contents(root_ + "/usr/lib/os-release", sizeLimit);
    std::istringstream lines(unicode::repaired(std::move(text).value_or("")));
    for (std::string each; std::getline(lines, each);) {
        if (each.starts_with(key) && each.substr(key.size()).starts_with('='))
            return unquoted(unicode::trimmed(std::string_view(each).substr(key.size() + 1)));
    }
    return {};
}

}  // namespace brindle
