#pragma once

#include <xcb/xcb.h>

#include <QPointer>
#include <memory>

#include "platform/RunningApplication.h"

namespace brindle {

class X11Workspace;

/// What a window told about its application when it was asked.
struct X11ApplicationFacts {
    std::optional<std::string> bundleIdentifier;
    std::optional<std::string> localizedName;
    std::int32_t processIdentifier = unknownProcess;
    ActivationPolicy activationPolicy = ActivationPolicy::accessory;

    /// Whether someone who compares identifiers or processes takes both for one application.
    [[nodiscard]] bool looksLike(const X11ApplicationFacts& other) const {
        return bundleIdentifier == other.bundleIdentifier ||
               (processIdentifier == other.processIdentifier && processIdentifier != unknownProcess);
    }
};

/// One window of an application. The window's end is the application's: a process that ends takes its windows along,
/// while a process number may be that of a sandbox and mean another process here.
class X11RunningApplication : public RunningApplication {
public:
    /// `isGone` turns true when the window is destroyed.
    X11RunningApplication(X11Workspace* workspace, xcb_window_t window, std::shared_ptr<const bool> isGone,
                          X11ApplicationFacts facts);
    ~X11RunningApplication() override;

    [[nodiscard]] std::optional<std::string> bundleIdentifier() const override { return facts_.bundleIdentifier; }
    [[nodiscard]] std::optional<std::string> localizedName() const override { return facts_.localizedName; }
    [[nodiscard]] std::int32_t processIdentifier() const override { return facts_.processIdentifier; }
    [[nodiscard]] ActivationPolicy activationPolicy() const override { return facts_.activationPolicy; }
    [[nodiscard]] bool isTerminated() const override { return *isGone_; }
    bool activate() override;

    [[nodiscard]] xcb_window_t window() const { return window_; }
    [[nodiscard]] const X11ApplicationFacts& facts() const { return facts_; }

private:
    QPointer<X11Workspace> workspace_;
    xcb_window_t window_;
    std::shared_ptr<const bool> isGone_;
    X11ApplicationFacts facts_;
};

}  // namespace brindle
