#include "platform/x11/X11Connection.h"

#include <poll.h>
#include <xcb/xinput.h>

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QPointer>
#include <QSocketNotifier>
#include <utility>

#include "base/Log.h"

namespace brindle {

namespace {

// Sent by another client with SendEvent; the rest of the byte is the type (X11 protocol, 1).
constexpr std::uint8_t sentFlag = 0x80;

bool isRawInput(std::uint16_t type) {
    return type >= XCB_INPUT_RAW_KEY_PRESS && type <= XCB_INPUT_RAW_MOTION;
}

constexpr std::uint32_t genericKey(std::uint8_t opcode, std::uint16_t type) {
    return (std::uint32_t{opcode} << 16U) | type | 0x1000000U;
}

}  // namespace

std::unique_ptr<X11Connection> X11Connection::open() {
    int screenNumber = 0;
    xcb_connection_t* connection = xcb_connect(nullptr, &screenNumber);
    if (xcb_connection_has_error(connection) != 0) {
        xcb_disconnect(connection);
        return nullptr;
    }
    return std::unique_ptr<X11Connection>(new X11Connection(connection, screenNumber));
}

X11Connection::X11Connection(xcb_connection_t* connection, int screenNumber) : connection_(connection) {
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection_));
    for (; screens.rem > 1 && screenNumber > 0; --screenNumber)
        xcb_screen_next(&screens);
    screen_ = screens.data;

    auto* notifier = new QSocketNotifier(xcb_get_file_descriptor(connection_), QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, &X11Connection::readEvents);
    // A round trip may have read events off the socket, which then never becomes readable for them.
    connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this,
            &X11Connection::dispatchQueued);
}

X11Connection::~X11Connection() {
    xcb_disconnect(connection_);
}

xcb_atom_t X11Connection::atom(std::string_view name) {
    const auto [known, isNew] = atoms_.try_emplace(std::string(name), XCB_ATOM_NONE);
    if (isNew) {
        const auto cookie = xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data());
        const XcbPointer<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection_, cookie, nullptr));
        if (reply)
            known->second = reply->atom;
    }
    return known->second;
}

std::string X11Connection::atomName(xcb_atom_t atom) {
    const XcbPointer<xcb_get_atom_name_reply_t> reply(
        xcb_get_atom_name_reply(connection_, xcb_get_atom_name(connection_, atom), nullptr));
    if (!reply)
        return {};
    return {xcb_get_atom_name_name(reply.get()), static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get()))};
}

bool X11Connection::hasExtension(xcb_extension_t& extension) {
    const auto* data = xcb_get_extension_data(connection_, &extension);
    return data != nullptr && data->present != 0;
}

std::uint8_t X11Connection::firstEvent(xcb_extension_t& extension) {
    return xcb_get_extension_data(connection_, &extension)->first_event;
}

Subscription X11Connection::onEvent(std::uint8_t type, Handler handler) {
    return handlers_[type].subscribe(std::move(handler));
}

Subscription X11Connection::onGenericEvent(xcb_extension_t& extension, std::uint16_t type, Handler handler) {
    const auto opcode = xcb_get_extension_data(connection_, &extension)->major_opcode;
    return handlers_[genericKey(opcode, type)].subscribe(std::move(handler));
}

void X11Connection::selectEvents(xcb_window_t window, std::uint32_t mask) {
    auto& selected = eventMasks_[window];
    selected |= mask;
    xcb_change_window_attributes(connection_, window, XCB_CW_EVENT_MASK, &selected);
}

bool X11Connection::announcesXInput() {
    if (!hasXInput_) {
        hasXInput_ = false;
        if (hasExtension(xcb_input_id)) {
            const XcbPointer<xcb_input_xi_query_version_reply_t> version(
                xcb_input_xi_query_version_reply(connection_, xcb_input_xi_query_version(connection_, 2, 2), nullptr));
            hasXInput_ = version && (version->major_version > 2 || version->minor_version >= 2);
        }
    }
    return *hasXInput_;
}

Subscription X11Connection::selectRawEvents(std::uint32_t mask) {
    if (!announcesXInput())
        return {};
    rawMasks_.insert(mask);
    applyRawEvents();
    return Subscription([self = QPointer(this), mask] {
        if (!self)
            return;
        self->rawMasks_.erase(self->rawMasks_.find(mask));
        self->applyRawEvents();
    });
}

// The server keeps one mask for each client, window and device; the last one set counts.
void X11Connection::applyRawEvents() {
    struct {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } selected{{XCB_INPUT_DEVICE_ALL_MASTER, 1}, 0};
    for (const auto mask : rawMasks_)
        selected.mask |= mask;
    xcb_input_xi_select_events(connection_, root(), 1, &selected.head);
    flush();
}

std::optional<std::string> X11Connection::property(xcb_window_t window, xcb_atom_t name, xcb_atom_t type,
                                                   std::uint32_t limit) {
    const auto cookie = xcb_get_property(connection_, 0, window, name, type, 0, limit / 4);
    const XcbPointer<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection_, cookie, nullptr));
    if (!reply || reply->type == XCB_ATOM_NONE || (type != XCB_ATOM_ANY && reply->type != type))
        return std::nullopt;
    return std::string(static_cast<const char*>(xcb_get_property_value(reply.get())),
                       static_cast<std::size_t>(xcb_get_property_value_length(reply.get())));
}

std::vector<std::uint32_t> X11Connection::property32(xcb_window_t window, xcb_atom_t name, xcb_atom_t type) {
    constexpr std::uint32_t limit = 4096;  // values; the longest list asked for is that of a window's states
    const auto cookie = xcb_get_property(connection_, 0, window, name, type, 0, limit);
    const XcbPointer<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection_, cookie, nullptr));
    if (!reply || reply->format != 32)
        return {};
    const auto* values = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {values, values + xcb_get_property_value_length(reply.get()) / 4};
}

std::uint32_t X11Connection::firstOfProperty32(xcb_window_t window, xcb_atom_t name, xcb_atom_t type) {
    const auto values = property32(window, name, type);
    return values.empty() ? 0 : values.front();
}

xcb_window_t X11Connection::selectionOwner(xcb_atom_t selection) {
    const XcbPointer<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(connection_, xcb_get_selection_owner(connection_, selection), nullptr));
    return reply ? reply->owner : xcb_window_t{XCB_WINDOW_NONE};
}

void X11Connection::readEvents() {
    // What one read of the socket brings: a client that never stops sending must leave the loop its other turns.
    if (const XcbPointer<xcb_generic_event_t> event{xcb_poll_for_event(connection_)})
        dispatch(*event);
    dispatchQueued();
    if (xcb_connection_has_error(connection_) != 0) {
        log("The connection to the X server is lost.");
        // What could be is stored already, and without a server no part of the program can go on.
        std::_Exit(EXIT_FAILURE);
    }
}

void X11Connection::handleEventsWithin(std::chrono::milliseconds limit) {
    dispatchQueued();
    pollfd socket{xcb_get_file_descriptor(connection_), POLLIN, 0};
    if (::poll(&socket, 1, static_cast<int>(limit.count())) > 0)
        readEvents();
}

void X11Connection::dispatchQueued() {
    while (const XcbPointer<xcb_generic_event_t> event{xcb_poll_for_queued_event(connection_)})
        dispatch(*event);
    flush();
}

void X11Connection::dispatch(const xcb_generic_event_t& event) {
    const std::uint8_t type = event.response_type & static_cast<std::uint8_t>(~sentFlag);
    std::uint32_t key = type;
    if (type == XCB_GE_GENERIC) {
        const auto& generic = reinterpret_cast<const xcb_ge_generic_event_t&>(event);
        key = genericKey(generic.extension, generic.event_type);
    }
    // What a client sends may name any time.
    if (type == event.response_type)
        noteTime(event);
    if (type == XCB_DESTROY_NOTIFY)
        eventMasks_.erase(reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window);
    if (const auto found = handlers_.find(key); found != handlers_.end())
        found->second.emit(event);
}

void X11Connection::noteTime(const xcb_generic_event_t& event) {
    xcb_timestamp_t time = XCB_CURRENT_TIME;
    if (event.response_type == XCB_KEY_PRESS || event.response_type == XCB_KEY_RELEASE) {
        time = reinterpret_cast<const xcb_key_press_event_t&>(event).time;
    } else if (event.response_type == XCB_PROPERTY_NOTIFY) {
        time = reinterpret_cast<const xcb_property_notify_event_t&>(event).time;
    } else if (event.response_type == XCB_GE_GENERIC && hasXInput_.value_or(false)) {
        const auto& raw = reinterpret_cast<const xcb_input_raw_key_press_event_t&>(event);
        if (raw.extension == xcb_get_extension_data(connection_, &xcb_input_id)->major_opcode &&
            isRawInput(raw.event_type))
            time = raw.time;
    }
    // The server's milliseconds begin again after 49 days; half of that is the difference between old and new.
    constexpr std::uint32_t half = 1U << 31U;
    if (time != XCB_CURRENT_TIME && (lastTime_ == XCB_CURRENT_TIME || time - lastTime_ < half))
        lastTime_ = time;
}

}  // namespace brindle
