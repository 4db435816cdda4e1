#include "platform/x11/X11MouseMonitor.h"

#include <xcb/xinput.h>

#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <utility>

#include "platform/StatusBar.h"
#include "platform/x11/X11Windows.h"

namespace brindle {

namespace {

constexpr std::uint32_t leftButton = 1;
constexpr std::uint32_t rightButton = 3;

std::uint64_t maskOf(std::uint32_t button) {
    return button == leftButton ? leftMouseUpMask : button == rightButton ? rightMouseUpMask : 0;
}

/// The toolkit scales each screen about its own top left corner.
Point toPoints(int x, int y) {
    for (const QScreen* screen : QGuiApplication::screens()) {
        const double ratio = screen->devicePixelRatio();
        const QPoint corner = screen->geometry().topLeft();
        if (QRect(corner, screen->geometry().size() * ratio).contains(x, y))
            return {corner.x() + (x - corner.x()) / ratio, corner.y() + (y - corner.y()) / ratio};
    }
    return {static_cast<double>(x), static_cast<double>(y)};
}

/// Any id of the toolkit's own connection; none when it does not talk to this server.
std::optional<std::uint32_t> toolkitClient() {
    const auto* application = qobject_cast<QGuiApplication*>(QCoreApplication::instance());
    const auto* x11 =
        application != nullptr ? application->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    if (x11 == nullptr)
        return std::nullopt;
    return xcb_get_setup(x11->connection())->resource_id_base;
}

}  // namespace

X11MouseMonitor::X11MouseMonitor(X11Connection& connection, std::function<bool()> isIconAnywhere)
    : connection_(connection),
      isIconAnywhere_(std::move(isIconAnywhere)),
      monitors_(std::make_shared<std::vector<std::shared_ptr<Monitor>>>()) {
    grace_.setSingleShot(true);
    grace_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&grace_, &QTimer::timeout, [this] { deliverHeld(); });
    if (!connection_.hasExtension(xcb_input_id))
        return;
    presses_ = connection_.onGenericEvent(xcb_input_id, XCB_INPUT_RAW_BUTTON_PRESS,
                                          [this](const auto& event) { handlePress(event); });
    releases_ = connection_.onGenericEvent(xcb_input_id, XCB_INPUT_RAW_BUTTON_RELEASE,
                                           [this](const auto& event) { handleRelease(event); });
}

Subscription X11MouseMonitor::addGlobalMonitor(std::uint64_t mask, std::function<void()> handler) {
    auto rawEvents = connection_.selectRawEvents(XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS |
                                                 XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_RELEASE);
    if (!rawEvents)
        return {};
    auto monitor = std::make_shared<Monitor>(Monitor{mask, pressCount_ + 1, std::move(handler), std::move(rawEvents)});
    monitors_->push_back(monitor);
    return Subscription([all = std::weak_ptr(monitors_), monitor] {
        monitor->mask = 0;
        monitor->rawEvents.reset();
        if (const auto alive = all.lock())
            std::erase(*alive, monitor);
    });
}

Point X11MouseMonitor::mouseLocation() const {
    return releasePlace_ ? *releasePlace_ : pointer();
}

Point X11MouseMonitor::pointer() const {
    const XcbPointer<xcb_query_pointer_reply_t> reply(
        xcb_query_pointer_reply(connection_.get(), xcb_query_pointer(connection_.get(), connection_.root()), nullptr));
    return reply ? toPoints(reply->root_x, reply->root_y) : Point{};
}

void X11MouseMonitor::handlePress(const xcb_generic_event_t& event) {
    const auto button = reinterpret_cast<const xcb_input_raw_button_press_event_t&>(event).detail;
    if (maskOf(button) != 0)
        pressed_[button] = {targetUnderPointer(), ++pressCount_};
}

void X11MouseMonitor::handleRelease(const xcb_generic_event_t& event) {
    const auto pressed = pressed_.extract(reinterpret_cast<const xcb_input_raw_button_release_event_t&>(event).detail);
    if (!pressed || pressed.mapped().target == Target::ours)
        return;
    const Click click{maskOf(pressed.key()), pressed.mapped().serial, pointer()};
    if (pressed.mapped().target == Target::other) {
        deliver(click);
        return;
    }
    held_.push_back(click);
    grace_.start(static_cast<int>(statusClickGrace * 1000));
}

void X11MouseMonitor::deliver(const Click& click) {
    releasePlace_ = click.place;
    const auto monitors = *monitors_;  // a handler may add one or leave
    for (const auto& monitor : monitors) {
        if ((monitor->mask & click.mask) != 0 && click.pressSerial >= monitor->firstPress)
            monitor->handler();
    }
    releasePlace_.reset();
}

void X11MouseMonitor::deliverHeld() {
    for (const auto& click : std::exchange(held_, {}))
        deliver(click);
}

void X11MouseMonitor::claimClick() {
    held_.clear();
    for (auto& [button, press] : pressed_) {
        if (press.target == Target::tray)
            press.target = Target::ours;
    }
}

X11MouseMonitor::Target X11MouseMonitor::targetUnderPointer() const {
    const auto windows = x11::underPointer(connection_);
    const auto toolkit = toolkitClient();
    const auto own = xcb_get_setup(connection_.get())->resource_id_base;
    // An icon that a tray embeds is a window of ours too.
    for (const auto window : windows) {
        if (isSameClient(window, own) || (toolkit && isSameClient(window, *toolkit)))
            return Target::ours;
    }
    // A host may be a dock, a window like any other, or the desktop itself.
    if (isIconAnywhere_ && isIconAnywhere_())
        return Target::tray;
    const bool isOnTray = std::any_of(windows.begin(), windows.end(), [this](auto each) { return isTray(each); });
    return isOnTray ? Target::tray : Target::other;
}

bool X11MouseMonitor::isTray(xcb_window_t window) const {
    if (x11::isDock(connection_, window))
        return true;
    const auto tray = connection_.atom("_NET_SYSTEM_TRAY_S0");
    const XcbPointer<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(connection_.get(), xcb_get_selection_owner(connection_.get(), tray), nullptr));
    return reply && reply->owner != XCB_WINDOW_NONE && isSameClient(window, reply->owner);
}

bool X11MouseMonitor::isSameClient(xcb_window_t window, xcb_window_t other) const {
    const auto clientBits = ~xcb_get_setup(connection_.get())->resource_id_mask;
    return (window & clientBits) == (other & clientBits);
}

}  // namespace brindle
