#pragma once

#include <QTimer>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "platform/MouseMonitor.h"
#include "platform/x11/X11Connection.h"

namespace brindle {

/// Raw button events of all mice. They arrive whoever grabs the pointer, but say neither where nor over whose window:
/// the server is asked that right after each.
class X11MouseMonitor : public MouseMonitor {
public:
    /// `isIconAnywhere` answers whether the status item may be in any window: then every click is one on the tray.
    explicit X11MouseMonitor(X11Connection& connection, std::function<bool()> isIconAnywhere = nullptr);

    [[nodiscard]] Subscription addGlobalMonitor(std::uint64_t mask, std::function<void()> handler) override;
    [[nodiscard]] Point mouseLocation() const override;

    /// The click on the tray that is under way or held back was one on the status item: nobody hears of it.
    void claimClick();

private:
    enum class Target { ours, tray, other };
    struct Press {
        Target target;
        std::uint64_t serial;
    };
    struct Click {
        std::uint64_t mask;
        std::uint64_t pressSerial;
        Point place;
    };
    struct Monitor {
        std::uint64_t mask;
        std::uint64_t firstPress;
        std::function<void()> handler;
        Subscription rawEvents;
    };

    void handlePress(const xcb_generic_event_t& event);
    void handleRelease(const xcb_generic_event_t& event);
    void deliver(const Click& click);
    void deliverHeld();
    [[nodiscard]] Target targetUnderPointer() const;
    [[nodiscard]] bool isTray(xcb_window_t window) const;
    [[nodiscard]] bool isSameClient(xcb_window_t window, xcb_window_t other) const;
    [[nodiscard]] Point pointer() const;

    X11Connection& connection_;
    std::function<bool()> isIconAnywhere_;
    Subscription presses_;
    Subscription releases_;
    std::uint64_t pressCount_ = 0;
    std::map<std::uint32_t, Press> pressed_;  // by button
    std::vector<Click> held_;
    QTimer grace_;
    std::optional<Point> releasePlace_;  // while handlers run
    std::shared_ptr<std::vector<std::shared_ptr<Monitor>>> monitors_;
};

}  // namespace brindle
