#pragma once

#include "platform/Bundle.h"

namespace brindle {

/// The distribution, the kernel and the machine, from the files that describe them.
class FreedesktopSystemInformation : public SystemInformation {
public:
    /// `root` is what stands before /etc and /sys.
    explicit FreedesktopSystemInformation(std::string root = "");

    /// Of the distribution; of the kernel where the distribution has no numbers.
    [[nodiscard]] SystemVersion operatingSystemVersion() const override;
    [[nodiscard]] std::string operatingSystemVersionString() const override;
    [[nodiscard]] std::string hardwareModel() const override;

private:
    [[nodiscard]] std::string line(const char* path) const;
    [[nodiscard]] std::string release(std::string_view key) const;

    std::string root_;
};

}  // namespace brindle
