#pragma once

#include <QObject>
#include <QTimer>
#include <array>
#include <memory>
#include <unordered_map>

#include "platform/Workspace.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11RunningApplication.h"

namespace brindle {

class Bundle;
class DesktopEntryIndex;

/// The windows of the desktop as applications. Without a window manager that reports the active window the one with
/// the input focus is in front, or the one under the pointer where the focus follows it; of its changes nobody tells,
/// so it is looked up when somebody asks and every `lookInterval`.
class X11Workspace : public QObject, public Workspace {
    Q_OBJECT

public:
    /// Seconds in which a window manager follows a request to activate a window, or never will.
    static constexpr double activationTime = 1.2;
    /// Seconds from the end of a window of ours until the window that came after it counts as the user's choice. A
    /// paste names its own 0.08 s after it has closed the popover.
    static constexpr double handOverTime = 0.1;
    static constexpr double lookInterval = 0.1;  ///< seconds

    X11Workspace(X11Connection& connection, const DesktopEntryIndex& index, const Bundle& bundle);
    ~X11Workspace() override;

    /// While an activation of ours is under way, other windows that could be taken for the wanted one do not show:
    /// until it is done this program counts as frontmost.
    [[nodiscard]] RunningApplicationHandle frontmostApplication() const override;
    [[nodiscard]] Subscription onDidActivateApplication(
        std::function<void(const RunningApplicationHandle&)> observer) override;
    bool openUrl(std::string_view url) override;
    [[nodiscard]] std::optional<std::string> applicationPath(std::string_view bundleIdentifier) const override;
    [[nodiscard]] std::optional<std::string> iconForFile(std::string_view path) const override;

    /// Brings that very window to the front, whichever desktop it is on. Returns whether the request could be made.
    bool activate(const X11RunningApplication& application);

private:
    using Handle = std::shared_ptr<X11RunningApplication>;
    struct Activation {
        xcb_window_t window;
        X11ApplicationFacts facts;
    };

    void handleProperty(const xcb_property_notify_event_t& event);
    void handleDestroyed(xcb_window_t window);
    void handleGone(xcb_window_t window);
    void updateManager();
    void updateActive();
    void settle();
    void setActive(Handle handle);
    [[nodiscard]] Handle shownActive() const;
    void announce();
    void announceHeldBack();
    void endActivation();
    [[nodiscard]] bool isMasked() const;
    [[nodiscard]] Handle makeHandle(xcb_window_t window) const;
    [[nodiscard]] X11ApplicationFacts factsOf(xcb_window_t window) const;
    [[nodiscard]] std::optional<std::string> identifierOf(xcb_window_t window) const;
    void goToDesktopOf(xcb_window_t window);
    void askManager(xcb_window_t window, std::string_view name, std::array<std::uint32_t, 2> data);
    bool focus(xcb_window_t window);

    X11Connection& connection_;
    const DesktopEntryIndex& index_;
    const Bundle& bundle_;
    RunningApplicationHandle ourselves_;

    xcb_window_t manager_ = XCB_WINDOW_NONE;
    bool isManagerTelling_ = false;
    Handle active_;
    bool isUnannounced_ = false;
    bool isAfterOurs_ = false;  // the window in front came after one of ours
    QTimer look_;
    QTimer settling_;
    std::optional<Activation> activation_;
    QTimer activationEnd_;
    QTimer handOver_;
    mutable std::unordered_map<xcb_window_t, std::shared_ptr<bool>> isGone_;

    Signal<const RunningApplicationHandle&> activations_;
    Subscription properties_;
    Subscription destructions_;
    Subscription unmappings_;
};

}  // namespace brindle
