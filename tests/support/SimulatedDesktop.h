#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "base/Signal.h"
#include "platform/AccessibilityTrust.h"
#include "platform/Application.h"
#include "platform/MouseMonitor.h"
#include "platform/Pasteboard.h"
#include "platform/RunningApplication.h"
#include "platform/Workspace.h"
#include "support/SimulatedMainQueue.h"

/// The part of a simulated desktop that the user shares with other programs.
namespace brindle::test {

using Table = std::map<std::string, std::string, std::less<>>;

inline std::optional<std::string> find(const Table& table, std::string_view key) {
    const auto found = table.find(key);
    return found == table.end() ? std::nullopt : std::optional(found->second);
}

class SimulatedWorkspace;

struct ApplicationFacts {
    std::optional<std::string> bundleIdentifier = std::nullopt;
    std::optional<std::string> localizedName = std::nullopt;
    ActivationPolicy policy = ActivationPolicy::regular;
    std::int32_t processIdentifier = -1;
};

class SimulatedApplication final : public RunningApplication,
                                   public std::enable_shared_from_this<SimulatedApplication> {
public:
    SimulatedApplication(SimulatedWorkspace& workspace, ApplicationFacts initial)
        : facts(std::move(initial)), workspace_(workspace) {}

    std::optional<std::string> bundleIdentifier() const override { return facts.bundleIdentifier; }
    std::optional<std::string> localizedName() const override { return facts.localizedName; }
    std::int32_t processIdentifier() const override { return facts.processIdentifier; }
    ActivationPolicy activationPolicy() const override { return facts.policy; }
    bool isTerminated() const override { return hasQuit; }
    bool activate() override;

    const ApplicationFacts facts;
    bool hasQuit = false;
    bool ignoresRequests = false;     ///< nothing comes of them
    double secondsToComeForward = 0;  ///< after it was asked to

private:
    SimulatedWorkspace& workspace_;
};

using SimulatedApplicationHandle = std::shared_ptr<SimulatedApplication>;

class SimulatedWorkspace final : public Workspace {
public:
    SimulatedWorkspace(Journal& itsJournal, SimulatedMainQueue& queue) : journal(itsJournal), queue_(queue) {}

    RunningApplicationHandle frontmostApplication() const override { return frontmost(); }
    Subscription onDidActivateApplication(std::function<void(const RunningApplicationHandle&)> observer) override {
        return activations_.subscribe(std::move(observer));
    }
    bool openUrl(std::string_view url) override {
        journal.add("open " + std::string(url));
        return true;
    }
    std::optional<std::string> applicationPath(std::string_view bundleIdentifier) const override {
        return find(applicationPaths, bundleIdentifier);
    }
    std::optional<std::string> iconForFile(std::string_view path) const override { return find(icons, path); }

    /// Starts an application; it stays in the background.
    SimulatedApplicationHandle launch(ApplicationFacts facts) {
        return std::make_shared<SimulatedApplication>(*this, std::move(facts));
    }
    /// An ordinary one called "TextEdit" has the identifier "org.example.TextEdit".
    SimulatedApplicationHandle launch(const char* name) {
        return launch(ApplicationFacts{.bundleIdentifier = std::string("org.example.") + name, .localizedName = name});
    }
    void bringToFront(const SimulatedApplicationHandle& app) {
        std::erase(stack_, app);
        stack_.push_back(app);
        activations_.emit(app);
    }
    void bringToFrontLater(const SimulatedApplicationHandle& app) {
        queue_.after(app->secondsToComeForward, [this, app] {
            if (frontmost() != app)
                bringToFront(app);
        });
    }
    /// It gives way to the one that was in front before it, if it is in front at all.
    void sendToBack(const SimulatedApplicationHandle& app) {
        const bool wasInFront = frontmost() == app;
        std::erase(stack_, app);
        if (wasInFront && !stack_.empty())
            queue_.post([this, next = frontmost()] { activations_.emit(next); });
    }
    SimulatedApplicationHandle frontmost() const { return stack_.empty() ? nullptr : stack_.back(); }

    Journal& journal;
    Table applicationPaths;  ///< by bundle identifier
    Table icons;             ///< by path

private:
    SimulatedMainQueue& queue_;
    std::vector<SimulatedApplicationHandle> stack_;  // those that have been in front, the frontmost last
    Signal<const RunningApplicationHandle&> activations_;
};

inline bool SimulatedApplication::activate() {
    workspace_.journal.add("activate " + facts.localizedName.value_or("?"));
    if (!ignoresRequests && !hasQuit)
        workspace_.bringToFrontLater(shared_from_this());
    return true;
}

/// This program.
class SimulatedOwnApplication final : public Application {
public:
    SimulatedOwnApplication(Journal& journal, SimulatedWorkspace& workspace)
        : self(workspace.launch("Self")), journal_(journal), workspace_(workspace) {}

    ApplicationDelegate* delegate() const override { return delegate_; }
    void setDelegate(ApplicationDelegate* delegate) override { delegate_ = delegate; }
    void activateIgnoringOtherApps() override {
        journal_.add("come to the front");
        workspace_.bringToFrontLater(self);
    }
    void deactivate() override { journal_.add("deactivate"); }
    void hide() override {
        journal_.add("hide");
        workspace_.sendToBack(self);
    }
    void terminate() override { journal_.add("terminate"); }
    EventType currentEvent() const override { return event; }

    EventType event = EventType::other;
    const SimulatedApplicationHandle self;

private:
    Journal& journal_;
    SimulatedWorkspace& workspace_;
    ApplicationDelegate* delegate_ = nullptr;
};

class SimulatedPasteboard final : public Pasteboard {
public:
    SimulatedPasteboard(Journal& journal, SimulatedMainQueue& queue) : journal_(journal), queue_(queue) {}

    std::int64_t changeCount() const override { return count_; }
    std::optional<SharedText> string() const override {
        ++readings;
        return text_;
    }
    void clearContents() override {
        journal_.add("clear pasteboard");
        ++takeovers_;
        ++count_;
        text_ = content_ = std::nullopt;
    }
    void setString(const SharedText& text) override {
        journal_.add("set pasteboard: " + text.string());
        text_ = content_ = text;
    }

    /// Another program's copy; none is a copy without text. It arrives on the next turn of the queue.
    void copy(std::optional<SharedText> text) {
        content_ = std::move(text);
        queue_.post([this, takeover = ++takeovers_] {
            if (takeover != takeovers_)
                return;
            text_ = content_;
            ++count_;
        });
    }
    /// What another program would paste.
    const std::optional<SharedText>& content() const { return content_; }

    mutable int readings = 0;  ///< of the text

private:
    Journal& journal_;
    SimulatedMainQueue& queue_;
    std::int64_t count_ = 0;
    std::int64_t takeovers_ = 0;
    std::optional<SharedText> content_;
    std::optional<SharedText> text_;  // what has arrived of it
};

class SimulatedTrust final : public AccessibilityTrust {
public:
    explicit SimulatedTrust(Journal& journal) : journal_(journal) {}
    bool isProcessTrusted(TrustPrompt prompt) override {
        journal_.add(prompt == TrustPrompt::ask ? "trust? (may prompt)" : "trust?");
        return isTrusted;
    }

    bool isTrusted = true;

private:
    Journal& journal_;
};

class SimulatedMouse final : public MouseMonitor {
public:
    explicit SimulatedMouse(Journal& journal) : journal_(journal) {}

    Subscription addGlobalMonitor(std::uint64_t mask, std::function<void()> handler) override {
        journal_.add("watch mouse " + hexadecimal(mask));
        ++monitors;
        auto releases = std::make_shared<Subscription>(releases_.subscribe([mask, handler](std::uint64_t button) {
            if ((mask & button) != 0)
                handler();
        }));
        return Subscription([this, releases] {
            releases->reset();
            --monitors;
            journal_.add("leave mouse");
        });
    }
    Point mouseLocation() const override { return location_; }

    /// A click in another program, seen as its release.
    void releaseElsewhere(Point point, std::uint64_t button) {
        location_ = point;
        releases_.emit(button);
    }

    int monitors = 0;

private:
    Journal& journal_;
    Point location_;
    Signal<std::uint64_t> releases_;
};

}  // namespace brindle::test
