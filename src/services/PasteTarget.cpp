#include "services/PasteTarget.h"

#include "platform/Bundle.h"
#include "platform/Platform.h"

namespace brindle {

namespace {

std::optional<std::string> localizedName(const RunningApplicationHandle& app) {
    return app ? app->localizedName() : std::nullopt;
}

}  // namespace

bool isOwnBundleIdentifier(const std::optional<std::string>& identifier) {
    return identifier == platform().bundle().bundleIdentifier();
}

std::optional<std::string> bundleIdentifier(const RunningApplicationHandle& app) {
    return app ? app->bundleIdentifier() : std::nullopt;
}

bool isPasteTarget(const RunningApplicationHandle& app) {
    return app && !isOwnBundleIdentifier(app->bundleIdentifier()) &&
           app->activationPolicy() == ActivationPolicy::regular && !app->isTerminated();
}

std::string shortName(const RunningApplicationHandle& app) {
    return localizedName(app).value_or("Unknown");
}

std::string fullName(const RunningApplicationHandle& app) {
    return localizedName(app).value_or(bundleIdentifier(app).value_or("Unknown"));
}

}  // namespace brindle
