#pragma once

#include "platform/Bundle.h"

namespace brindle {

/// The program as it is installed below a prefix, or as it lies in its build tree.
class FreedesktopBundle : public Bundle {
public:
    static constexpr const char* identifier = "org.brindle.Brindle";

    FreedesktopBundle();
    /// For the executable at that path, and the resources that stand in where none are installed, absolute or relative
    /// to the executable's folder.
    FreedesktopBundle(std::string executable, const std::string& sourceResources);

    [[nodiscard]] std::optional<std::string> bundleIdentifier() const override { return identifier; }
    [[nodiscard]] std::optional<std::string> infoString(std::string_view key) const override;
    [[nodiscard]] std::optional<std::string> resourcePath() const override { return resources_; }
    [[nodiscard]] std::optional<std::string> executablePath() const override;
    [[nodiscard]] std::string bundlePath() const override { return prefix_; }
    [[nodiscard]] std::optional<std::string> imageNamed(std::string_view name) const override;
    [[nodiscard]] std::optional<std::string> symbolNamed(std::string_view name) const override;

private:
    std::string executable_;  // asked for once: after an upgrade the running file has no name any more
    std::string prefix_;
    std::optional<std::string> resources_;
};

}  // namespace brindle
