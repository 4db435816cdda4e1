#include "platform/x11/X11Pasteboard.h"

#include <chrono>
#include <utility>

#include "base/Log.h"

namespace brindle {

namespace {

constexpr std::uint32_t allOwnerChanges = XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE;

constexpr std::chrono::seconds handOverLimit{1};

/// Hands the events of a core type to `handler` as what they are.
template <typename Event, typename Handler>
Subscription onCoreEvent(X11Connection& connection, std::uint8_t type, Handler handler) {
    return connection.onEvent(
        type, [handler](const xcb_generic_event_t& event) { handler(reinterpret_cast<const Event&>(event)); });
}

}  // namespace

X11Pasteboard::X11Pasteboard(X11Connection& connection, X11ReadLimits limits)
    : connection_(connection),
      clipboard_(connection.atom("CLIPBOARD")),
      hasNotices_(connection.hasExtension(xcb_xfixes_id)),
      server_(connection),
      reader_(connection, clipboard_, limits, [this](std::optional<SharedText> text) { settle(std::move(text)); }) {
    heldClearing_.setSingleShot(true);
    QObject::connect(&heldClearing_, &QTimer::timeout, &heldClearing_,
                     [this] { server_.own(clipboard_, std::nullopt); });
    subscribe();
    watch(clipboard_, allOwnerChanges);
    readPresentOwner();
}

void X11Pasteboard::subscribe() {
    events_.push_back(onCoreEvent<xcb_selection_notify_event_t>(
        connection_, XCB_SELECTION_NOTIFY, [this](const auto& event) { reader_.handleAnswer(event); }));
    events_.push_back(onCoreEvent<xcb_selection_request_event_t>(
        connection_, XCB_SELECTION_REQUEST, [this](const auto& event) { server_.handleRequest(event); }));
    events_.push_back(onCoreEvent<xcb_selection_clear_event_t>(
        connection_, XCB_SELECTION_CLEAR, [this](const auto& event) { server_.handleClear(event); }));
    events_.push_back(onCoreEvent<xcb_destroy_notify_event_t>(
        connection_, XCB_DESTROY_NOTIFY, [this](const auto& event) { server_.handleDestroy(event); }));
    events_.push_back(
        onCoreEvent<xcb_property_notify_event_t>(connection_, XCB_PROPERTY_NOTIFY, [this](const auto& event) {
            if (reader_.hasWindow(event.window))
                reader_.handleProperty(event);
            else
                server_.handleProperty(event);
        }));
    if (!hasNotices_) {
        log("The X server has no XFixes extension: what other programs copy is not noticed.");
        return;
    }
    const auto xfixes = connection_.firstEvent(xcb_xfixes_id);
    events_.push_back(onCoreEvent<xcb_xfixes_selection_notify_event_t>(
        connection_, xfixes + XCB_XFIXES_SELECTION_NOTIFY, [this](const auto& event) { handleNotice(event); }));
    // The server answers nothing of the extension before it has been told a version.
    xcb_discard_reply(connection_.get(), xcb_xfixes_query_version(connection_.get(), 1, 0).sequence);
}

void X11Pasteboard::watch(xcb_atom_t selection, std::uint32_t events) {
    if (hasNotices_)
        xcb_xfixes_select_selection_input(connection_.get(), server_.window(), selection, events);
}

void X11Pasteboard::readPresentOwner() {
    if (const auto owner = connection_.selectionOwner(clipboard_); owner != XCB_WINDOW_NONE)
        reader_.start(owner, XCB_CURRENT_TIME);
}

void X11Pasteboard::handleNotice(const xcb_xfixes_selection_notify_event_t& notice) {
    if (notice.owner == server_.window()) {
        server_.noteOwnership(notice.selection, notice.selection_timestamp);
        return;
    }
    // What happened before a write of our own is over, also when the news comes after it.
    if (notice.selection != clipboard_ || heldClearing_.isActive() || server_.isTaking(clipboard_))
        return;
    if (notice.owner != XCB_NONE) {
        reader_.start(notice.owner, notice.selection_timestamp);
        return;
    }
    const bool isGivenUp = notice.subtype == XCB_XFIXES_SELECTION_EVENT_SET_SELECTION_OWNER;
    if (!isGivenUp && text_ && !reader_.isReading()) {
        server_.inherit(clipboard_, *text_, notice.selection_timestamp);
        return;
    }
    reader_.abandon();
    settle(std::nullopt);
}

void X11Pasteboard::settle(std::optional<SharedText> text) {
    text_ = std::move(text);
    ++changeCount_;
}

void X11Pasteboard::clearContents() {
    reader_.abandon();
    settle(std::nullopt);
    heldClearing_.start(0);
}

void X11Pasteboard::setString(const SharedText& text) {
    const bool isCleared = heldClearing_.isActive() || (server_.isOwner(clipboard_) && !text_);
    if (!isCleared)
        ++changeCount_;
    heldClearing_.stop();
    reader_.abandon();
    text_ = text;
    server_.own(clipboard_, text_);
}

void X11Pasteboard::handOver() {
    bool isAnswered = false;
    const auto answers = onCoreEvent<xcb_selection_notify_event_t>(
        connection_, XCB_SELECTION_NOTIFY,
        [&](const auto& event) { isAnswered = isAnswered || event.requestor == server_.window(); });
    if (!server_.askToSave(clipboard_))
        return;
    const QDeadlineTimer end(handOverLimit);
    while (!isAnswered && !end.hasExpired())
        connection_.handleEventsWithin(std::chrono::milliseconds(end.remainingTime()));
}

void X11Pasteboard::lendPrimary(const SharedText& text) {
    watch(XCB_ATOM_PRIMARY, XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER);
    server_.own(XCB_ATOM_PRIMARY, text);
}

void X11Pasteboard::returnPrimary() {
    server_.giveUp(XCB_ATOM_PRIMARY);
    watch(XCB_ATOM_PRIMARY, 0);
}

}  // namespace brindle
