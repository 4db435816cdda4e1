#include "support/SimulatedDesktop.h"

#include <algorithm>
#include <utility>

#include "support/Text.h"

namespace brindle::test {

namespace {

std::optional<std::string> lookUp(const std::vector<std::pair<std::string, std::string>>& table, std::string_view key) {
    const auto found = std::ranges::find(table, key, [](const auto& row) { return std::string_view(row.first); });
    return found == table.end() ? std::nullopt : std::optional(found->second);
}

}  // namespace

bool SimulatedApplication::activate() {
    workspace_.journal().add("activate " + facts.localizedName.value_or("?"));
    if (refusesRequests)
        return false;
    if (!hasQuit && !ignoresRequests)
        workspace_.bringToFrontLater(shared_from_this());
    return true;
}

bool SimulatedWorkspace::openUrl(std::string_view url) {
    journal_.add("open " + std::string(url));
    return opensUrls;
}

std::optional<std::string> SimulatedWorkspace::applicationPath(std::string_view bundleIdentifier) const {
    return lookUp(applicationPaths, bundleIdentifier);
}

std::optional<std::string> SimulatedWorkspace::iconForFile(std::string_view path) const {
    return lookUp(icons, path);
}

SimulatedApplicationHandle SimulatedWorkspace::launch(ApplicationFacts facts) {
    return std::make_shared<SimulatedApplication>(*this, std::move(facts));
}

SimulatedApplicationHandle SimulatedWorkspace::launch(const char* name) {
    return launch(ApplicationFacts{.bundleIdentifier = std::string("org.example.") + name, .localizedName = name});
}

void SimulatedWorkspace::bringToFront(const SimulatedApplicationHandle& app) {
    std::erase(stack_, app);
    stack_.push_back(app);
    activations_.emit(app);
}

void SimulatedWorkspace::bringToFrontLater(const SimulatedApplicationHandle& app) {
    queue_.after(app->secondsToComeForward, [this, app] {
        if (frontmost() != app)
            bringToFront(app);
    });
}

void SimulatedWorkspace::sendToBack(const SimulatedApplicationHandle& app) {
    const bool wasInFront = frontmost() == app;
    std::erase(stack_, app);
    if (wasInFront && !stack_.empty())
        queue_.post([this, next = frontmost()] { activations_.emit(next); });
}

SimulatedOwnApplication::SimulatedOwnApplication(Journal& journal, SimulatedWorkspace& workspace)
    : self(workspace.launch("Self")), journal_(journal), workspace_(workspace) {}

void SimulatedOwnApplication::activateIgnoringOtherApps() {
    journal_.add("come to the front");
    workspace_.bringToFrontLater(self);
}

void SimulatedOwnApplication::hide() {
    journal_.add("hide");
    workspace_.sendToBack(self);
}

std::optional<SharedText> SimulatedPasteboard::string() const {
    ++readings;
    return text_;
}

void SimulatedPasteboard::clearContents() {
    journal_.add("clear pasteboard");
    ++takeovers_;
    ++count_;
    text_ = content_ = std::nullopt;
}

void SimulatedPasteboard::setString(const SharedText& text) {
    journal_.add("set pasteboard: " + text.string());
    text_ = content_ = text;
}

void SimulatedPasteboard::copy(std::optional<SharedText> text) {
    content_ = std::move(text);
    queue_.post([this, takeover = ++takeovers_] {
        if (takeover != takeovers_)
            return;
        text_ = content_;
        ++count_;
    });
}

bool SimulatedTrust::isProcessTrusted(TrustPrompt prompt) {
    journal_.add(prompt == TrustPrompt::ask ? "trust? (may prompt)" : "trust?");
    return isTrusted;
}

Subscription SimulatedMouse::addGlobalMonitor(std::uint64_t mask, std::function<void()> handler) {
    if (!canMonitor)
        return {};
    journal_.add("watch mouse " + hexadecimal(mask));
    ++monitors;
    auto releases = releases_.subscribe([mask, handler = std::move(handler)](std::uint64_t button) {
        if ((mask & button) != 0)
            handler();
    });
    return Subscription([this, releases = std::make_shared<Subscription>(std::move(releases))] {
        releases->reset();
        --monitors;
        journal_.add("leave mouse");
    });
}

void SimulatedMouse::releaseElsewhere(Point point, std::uint64_t button) {
    location_ = point;
    releases_.emit(button);
}

}  // namespace brindle::test
