#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace brindle {

/// This program's identity and the files it came with.
class Bundle {
public:
    virtual ~Bundle() = default;

    [[nodiscard]] virtual std::optional<std::string> bundleIdentifier() const = 0;
    /// An entry of the program's description, for example "CFBundleShortVersionString".
    [[nodiscard]] virtual std::optional<std::string> infoString(std::string_view key) const = 0;

    [[nodiscard]] virtual std::optional<std::string> resourcePath() const = 0;    ///< folder of the resources
    [[nodiscard]] virtual std::optional<std::string> executablePath() const = 0;  ///< the running program's file
    [[nodiscard]] virtual std::string bundlePath() const = 0;                     ///< where all of it is installed

    /// Path of the image resource with that name ("AppIcon"); none when it is missing or cannot be read.
    [[nodiscard]] virtual std::optional<std::string> imageNamed(std::string_view name) const = 0;
    /// Path of the symbol with that name ("doc.on.clipboard"), drawn in one colour; none when it is missing.
    [[nodiscard]] virtual std::optional<std::string> symbolNamed(std::string_view name) const = 0;
};

struct SystemVersion {
    int major = 0;
    int minor = 0;
    int patch = 0;
};

/// The system that the program runs on.
class SystemInformation {
public:
    virtual ~SystemInformation() = default;

    [[nodiscard]] virtual SystemVersion operatingSystemVersion() const = 0;
    /// For people; ends in "(Build " + identifier + ")".
    [[nodiscard]] virtual std::string operatingSystemVersionString() const = 0;
    [[nodiscard]] virtual std::string hardwareModel() const = 0;  ///< never empty
};

}  // namespace brindle
