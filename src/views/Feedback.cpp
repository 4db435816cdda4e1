#include "views/Feedback.h"

#include "platform/Bundle.h"
#include "platform/Platform.h"
#include "platform/Workspace.h"

namespace brindle {

namespace {

bool isAllowedInQuery(char character) {
    constexpr std::string_view allowed =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~!$&'()*+,;=:@/?";
    return allowed.find(character) != std::string_view::npos;
}

/// "Debian GNU/Linux 12 (Build 6.1.0)" names the build 6.1.0.
std::string buildIdentifier(const std::string& versionText) {
    constexpr std::string_view mark = "Build ";
    const auto at = versionText.rfind(mark);
    const std::string last = at == std::string::npos ? versionText : versionText.substr(at + mark.size());
    const auto first = last.find_first_not_of(')');
    return first == std::string::npos ? std::string() : last.substr(first, last.find_last_not_of(')') - first + 1);
}

}  // namespace

std::string appVersion() {
    return platform().bundle().infoString("CFBundleShortVersionString").value_or("1.0");
}

std::string osVersionDescription() {
    const SystemVersion version = platform().systemInformation().operatingSystemVersion();
    return "Version " + std::to_string(version.major) + "." + std::to_string(version.minor) + "." +
           std::to_string(version.patch) + " (Build " +
           buildIdentifier(platform().systemInformation().operatingSystemVersionString()) + ")";
}

std::string deviceModel() {
    return platform().systemInformation().hardwareModel();
}

std::string feedbackBody() {
    return "\n\n---\nBrindle: " + appVersion() + "\nSystem: " + osVersionDescription() + "\nDevice: " + deviceModel();
}

std::string percentEncodedForQuery(std::string_view text) {
    constexpr char digits[] = "0123456789ABCDEF";
    std::string encoded;
    for (const char character : text) {
        if (isAllowedInQuery(character)) {
            encoded += character;
            continue;
        }
        const auto byte = static_cast<unsigned char>(character);
        encoded += {'%', digits[byte >> 4], digits[byte & 0xF]};
    }
    return encoded;
}

void openURL(std::string_view text) {
    platform().workspace().openUrl(text);
}

void openFeedbackMail() {
    openURL("mailto:" BRINDLE_SUPPORT_ADDRESS "?subject=" + percentEncodedForQuery("Brindle Feedback") +
            "&body=" + percentEncodedForQuery(feedbackBody()));
}

}  // namespace brindle
