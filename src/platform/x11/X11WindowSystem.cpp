#include "platform/x11/X11WindowSystem.h"

#include <xcb/xcb_ewmh.h>
#include <xcb/xfixes.h>

#include <QGuiApplication>
#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <utility>

#include "platform/x11/X11Panel.h"

namespace brindle {

namespace {

/// What is sent about a window of the toolkit's goes the toolkit's way: it must not overtake that window's creation
/// or mapping.
xcb_connection_t* toolkitConnection() {
    return qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
}

int screenNumber(const X11Connection& connection) {
    int number = 0;
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection.get()));
    for (; screens.rem > 1 && screens.data->root != connection.root(); ++number)
        xcb_screen_next(&screens);
    return number;
}

}  // namespace

X11WindowSystem::X11WindowSystem(std::unique_ptr<X11Connection> connection)
    : connection_(std::move(connection)),
      clock_(xcb_generate_id(connection_->get())),
      userTime_(connection_->atom("_NET_WM_USER_TIME")),
      activeWindow_(connection_->atom("_NET_ACTIVE_WINDOW")),
      windowState_(connection_->atom("_NET_WM_STATE")),
      frameExtents_(connection_->atom("_GTK_FRAME_EXTENTS")),
      offTaskbar_{connection_->atom("_NET_WM_STATE_SKIP_TASKBAR"), connection_->atom("_NET_WM_STATE_SKIP_PAGER")} {
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(connection_->get(), 0, clock_, connection_->root(), -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &mask);
    propertyNotices_ = connection_->onEvent(XCB_PROPERTY_NOTIFY, [this](const xcb_generic_event_t& event) {
        giveFocus(reinterpret_cast<const xcb_property_notify_event_t&>(event).time);
    });

    if (!connection_->hasExtension(xcb_xfixes_id))
        return;
    // The server answers none of the extension's requests before the versions are settled.
    const auto version = xcb_xfixes_query_version(connection_->get(), 5, 0);
    const XcbPointer<xcb_xfixes_query_version_reply_t> settled(
        xcb_xfixes_query_version_reply(connection_->get(), version, nullptr));
    selectionNotices_ = connection_->onEvent(
        connection_->firstEvent(xcb_xfixes_id) + XCB_XFIXES_SELECTION_NOTIFY, [this](const xcb_generic_event_t& event) {
            const auto& notice = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event);
            refresh(notice.selection == tray_.name ? tray_ : compositor_);
        });
    const std::string screen = std::to_string(screenNumber(*connection_));
    watch(compositor_, "_NET_WM_CM_S" + screen);
    watch(tray_, "_NET_SYSTEM_TRAY_S" + screen);
}

Subscription X11WindowSystem::onCompositingChange(std::function<void()> observer) {
    return compositor_.changes.subscribe(std::move(observer));
}

Subscription X11WindowSystem::onEmbeddingTrayChange(std::function<void()> observer) {
    return tray_.changes.subscribe(std::move(observer));
}

std::optional<ColorScheme> X11WindowSystem::panelScheme() const {
    return x11::panelScheme(*connection_);
}

void X11WindowSystem::takeFocus(QWindow& window) {
    wantsFocus_ = &window;
    // Window managers compare the request's time with that of the last input, and the toolkit may have seen none for
    // hours: an empty change of a property comes back with the server's time of now.
    xcb_change_property(connection_->get(), XCB_PROP_MODE_APPEND, clock_, userTime_, XCB_ATOM_CARDINAL, 32, 0, nullptr);
    connection_->flush();
}

bool X11WindowSystem::hasFocus() const {
    const auto cookie = xcb_get_input_focus(connection_->get());
    const XcbPointer<xcb_get_input_focus_reply_t> reply(xcb_get_input_focus_reply(connection_->get(), cookie, nullptr));
    const auto windows = QGuiApplication::topLevelWindows();
    return reply && std::any_of(windows.begin(), windows.end(), [&](QWindow* window) {
               return window->handle() != nullptr && window->winId() == reply->focus;
           });
}

void X11WindowSystem::keepOffTaskbar(QWindow& window) {
    // Some taskbars list tool windows too. The window manager clears the states when a window leaves the screen; the
    // toolkit adds its own to these before the next mapping.
    xcb_change_property(toolkitConnection(), XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(window.winId()),
                        windowState_, XCB_ATOM_ATOM, 32, offTaskbar_.size(), offTaskbar_.data());
}

void X11WindowSystem::setContentRectangle(QWindow& window, QRect content, QMargins shadow) {
    const double scale = window.devicePixelRatio();
    const auto inPixels = [scale](int points) { return static_cast<std::uint32_t>(std::lround(points * scale)); };
    const std::array extents = {inPixels(shadow.left()), inPixels(shadow.right()), inPixels(shadow.top()),
                                inPixels(shadow.bottom())};
    xcb_change_property(toolkitConnection(), XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(window.winId()),
                        frameExtents_, XCB_ATOM_CARDINAL, 32, extents.size(), extents.data());
    if (!connection_->hasExtension(xcb_xfixes_id))
        return;
    const QRect pixels = QRectF(content.topLeft() * scale, content.size() * scale).toRect();
    const xcb_rectangle_t area{static_cast<std::int16_t>(pixels.x()), static_cast<std::int16_t>(pixels.y()),
                               static_cast<std::uint16_t>(pixels.width()), static_cast<std::uint16_t>(pixels.height())};
    auto* connection = toolkitConnection();
    const auto region = xcb_generate_id(connection);
    xcb_xfixes_create_region(connection, region, 1, &area);
    xcb_xfixes_set_window_shape_region(connection, static_cast<xcb_window_t>(window.winId()), XCB_SHAPE_SK_INPUT, 0, 0,
                                       region);
    xcb_xfixes_destroy_region(connection, region);
}

bool X11WindowSystem::isMouseButtonDown() const {
    const auto cookie = xcb_query_pointer(connection_->get(), connection_->root());
    const XcbPointer<xcb_query_pointer_reply_t> reply(xcb_query_pointer_reply(connection_->get(), cookie, nullptr));
    constexpr unsigned buttons = XCB_BUTTON_MASK_1 | XCB_BUTTON_MASK_2 | XCB_BUTTON_MASK_3;
    return reply && (reply->mask & buttons) != 0;
}

bool X11WindowSystem::hasOwner(const Selection& selection) const {
    const auto cookie = xcb_get_selection_owner(connection_->get(), selection.name);
    const XcbPointer<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(connection_->get(), cookie, nullptr));
    return reply && reply->owner != XCB_WINDOW_NONE;
}

void X11WindowSystem::watch(Selection& selection, std::string_view name) {
    selection.name = connection_->atom(name);
    xcb_xfixes_select_selection_input(connection_->get(), connection_->root(), selection.name,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    selection.hasOwner = hasOwner(selection);
}

void X11WindowSystem::refresh(Selection& selection) {
    const bool had = std::exchange(selection.hasOwner, hasOwner(selection));
    if (had != selection.hasOwner)
        selection.changes.emit();
}

void X11WindowSystem::giveFocus(xcb_timestamp_t time) {
    const QPointer<QWindow> window = std::exchange(wantsFocus_, nullptr);
    if (window.isNull() || !window->isVisible())
        return;
    const auto id = static_cast<xcb_window_t>(window->winId());
    auto* connection = toolkitConnection();
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, id, userTime_, XCB_ATOM_CARDINAL, 32, 1, &time);

    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = id;
    message.type = activeWindow_;
    message.data.data32[0] = XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER;  // as a pager would: no focus stealing prevention
    message.data.data32[1] = time;
    xcb_send_event(connection, 0, connection_->root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
    xcb_flush(connection);
}

}  // namespace brindle
