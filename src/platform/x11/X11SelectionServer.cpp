#include "platform/x11/X11SelectionServer.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>
#include <iterator>
#include <utility>

#include "platform/x11/X11SelectionText.h"

namespace brindle {

namespace {

constexpr std::size_t largestChunk = std::size_t{1} << 20U;  // bytes: a millisecond of copying
constexpr std::size_t requestHeader = 64;                    // bytes, generously

struct TextTarget {
    const char* target;
    const char* type;
};
// TEXT leaves the choice of the type to the owner.
constexpr std::array textTargets = {
    TextTarget{"UTF8_STRING", "UTF8_STRING"}, TextTarget{"text/plain;charset=utf-8", "text/plain;charset=utf-8"},
    TextTarget{"text/plain", "text/plain"}, TextTarget{"TEXT", "UTF8_STRING"}, TextTarget{"STRING", "STRING"}};

}  // namespace

X11SelectionServer::X11SelectionServer(X11Connection& connection)
    : connection_(connection),
      window_(xcb_generate_id(connection.get())),
      chunkSize_(
          std::min(largestChunk, std::size_t{4} * xcb_get_maximum_request_length(connection.get()) - requestHeader)) {
    xcb_create_window(connection_.get(), 0, window_, connection_.root(), -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    QObject::connect(&sweep_, &QTimer::timeout, &sweep_, [this] { endStalledTransfers(); });
}

X11SelectionServer::~X11SelectionServer() {
    xcb_destroy_window(connection_.get(), window_);
}

void X11SelectionServer::own(xcb_atom_t selection, std::optional<SharedText> text) {
    auto& owned = owned_[selection];
    owned.text = std::move(text);
    ++owned.noticesDue;
    // The current time and not that of some event: a key grabbed elsewhere or a timer may be what makes us take it, and
    // with a time before the last change the server would refuse.
    xcb_set_selection_owner(connection_.get(), window_, selection, XCB_CURRENT_TIME);
    (void)connection_.selectionOwner(selection);  // an answer says that the server knows
}

void X11SelectionServer::inherit(xcb_atom_t selection, const SharedText& text, xcb_timestamp_t time) {
    if (connection_.selectionOwner(selection) != XCB_WINDOW_NONE)
        return;
    // With the time at which the owner that ended took it, the server refuses when somebody takes it between the
    // question and this, and whoever takes it later is not refused for a key that came before the end.
    xcb_set_selection_owner(connection_.get(), window_, selection, time);
    if (connection_.selectionOwner(selection) == window_)
        owned_[selection] = {text, time, 1};
}

bool X11SelectionServer::askToSave(xcb_atom_t selection) {
    const auto found = owned_.find(selection);
    const auto manager = connection_.atom("CLIPBOARD_MANAGER");
    if (found == owned_.end() || !found->second.text || connection_.selectionOwner(manager) == XCB_WINDOW_NONE)
        return false;
    const auto targets = textTargetAtoms();
    const auto property = connection_.atom("BRINDLE_SAVE_TARGETS");
    xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, window_, property, XCB_ATOM_ATOM, 32,
                        static_cast<std::uint32_t>(targets.size()), targets.data());
    xcb_convert_selection(connection_.get(), window_, manager, connection_.atom("SAVE_TARGETS"), property,
                          XCB_CURRENT_TIME);
    connection_.flush();
    return true;
}

void X11SelectionServer::giveUp(xcb_atom_t selection) {
    const auto found = owned_.find(selection);
    if (found == owned_.end())
        return;
    if (connection_.selectionOwner(selection) == window_) {
        // With the time at which we took it the server refuses when another program has taken it since.
        xcb_set_selection_owner(connection_.get(), XCB_NONE, selection, found->second.time);
        connection_.flush();
    }
    owned_.erase(found);
}

void X11SelectionServer::noteOwnership(xcb_atom_t selection, xcb_timestamp_t time) {
    const auto found = owned_.find(selection);
    if (found == owned_.end())
        return;
    found->second.time = time;
    found->second.noticesDue = std::max(0, found->second.noticesDue - 1);
}

bool X11SelectionServer::isTaking(xcb_atom_t selection) const {
    const auto found = owned_.find(selection);
    return found != owned_.end() && found->second.noticesDue > 0;
}

void X11SelectionServer::handleRequest(const xcb_selection_request_event_t& request) {
    // Obsolete requestors name no property (ICCCM, 2.2). A request older than our text is served all the same: the
    // user's key press may have come before the text that it is meant to paste.
    xcb_atom_t property = request.property == XCB_ATOM_NONE ? request.target : request.property;
    const auto found = owned_.find(request.selection);
    if (found == owned_.end() || !convert(found->second, request.requestor, request.target, property))
        property = XCB_ATOM_NONE;
    xcb_selection_notify_event_t answer{};
    answer.response_type = XCB_SELECTION_NOTIFY;
    answer.time = request.time;
    answer.requestor = request.requestor;
    answer.selection = request.selection;
    answer.target = request.target;
    answer.property = property;
    std::array<char, 32> event{};  // its size on the wire; the structure is shorter
    std::memcpy(event.data(), &answer, sizeof answer);
    xcb_send_event(connection_.get(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT, event.data());
    connection_.flush();
}

void X11SelectionServer::handleClear(const xcb_selection_clear_event_t& clear) {
    if (!isTaking(clear.selection))
        owned_.erase(clear.selection);
}

bool X11SelectionServer::convert(const Owned& owned, xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property) {
    if (target == connection_.atom("TARGETS")) {
        announceTargets(owned, requestor, property);
        return true;
    }
    if (target == connection_.atom("TIMESTAMP")) {
        xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, requestor, property, XCB_ATOM_INTEGER, 32, 1,
                            &owned.time);
        return true;
    }
    if (target == connection_.atom("MULTIPLE"))
        return convertMultiple(owned, requestor, property);
    return owned.text && convertText(*owned.text, requestor, target, property);
}

void X11SelectionServer::announceTargets(const Owned& owned, xcb_window_t requestor, xcb_atom_t property) {
    std::vector targets = {connection_.atom("TARGETS"), connection_.atom("TIMESTAMP"), connection_.atom("MULTIPLE")};
    if (owned.text) {
        const auto texts = textTargetAtoms();
        targets.insert(targets.end(), texts.begin(), texts.end());
    }
    xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, requestor, property, XCB_ATOM_ATOM, 32,
                        static_cast<std::uint32_t>(targets.size()), targets.data());
}

std::vector<xcb_atom_t> X11SelectionServer::textTargetAtoms() {
    std::vector<xcb_atom_t> atoms;
    atoms.reserve(std::size(textTargets));
    for (const auto& known : textTargets)
        atoms.push_back(connection_.atom(known.target));
    return atoms;
}

bool X11SelectionServer::convertMultiple(const Owned& owned, xcb_window_t requestor, xcb_atom_t property) {
    const auto pairType = connection_.atom("ATOM_PAIR");
    auto pairs = connection_.property32(requestor, property, pairType);
    constexpr std::size_t mostValues = 64;  // two for each target; we have fewer, and each may be a megabyte
    if (pairs.size() < 2 || pairs.size() > mostValues)
        return false;
    for (std::size_t i = 0; i + 1 < pairs.size(); i += 2) {
        const bool isNested = pairs[i] == connection_.atom("MULTIPLE");
        if (isNested || pairs[i + 1] == XCB_ATOM_NONE || !convert(owned, requestor, pairs[i], pairs[i + 1]))
            pairs[i + 1] = XCB_ATOM_NONE;
    }
    xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, requestor, property, pairType, 32,
                        static_cast<std::uint32_t>(pairs.size()), pairs.data());
    return true;
}

bool X11SelectionServer::convertText(const SharedText& text, xcb_window_t requestor, xcb_atom_t target,
                                     xcb_atom_t property) {
    const auto known = std::find_if(textTargets.begin(), textTargets.end(),
                                    [&](const TextTarget& each) { return connection_.atom(each.target) == target; });
    if (known == textTargets.end())
        return false;
    Transfer transfer{requestor,
                      property,
                      connection_.atom(known->type),
                      std::string_view(known->type) == "STRING" ? Encoding::latin1 : Encoding::utf8,
                      text,
                      0,
                      {}};
    if (text.view().size() <= chunkSize_)
        sendChunk(transfer);
    else
        startTransfer(std::move(transfer));
    return true;
}

void X11SelectionServer::startTransfer(Transfer transfer) {
    endTransfers([&](const Transfer& other) {
        return other.requestor == transfer.requestor && other.property == transfer.property;
    });
    // Wanted before the first property is set, or its removal could be missed.
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection_.get(), transfer.requestor, XCB_CW_EVENT_MASK, &events);
    const auto size = static_cast<std::uint32_t>(std::min<std::size_t>(transfer.text.view().size(), UINT32_MAX));
    xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, transfer.requestor, transfer.property,
                        connection_.atom("INCR"), 32, 1, &size);
    transfer.lastProgress = std::chrono::steady_clock::now();
    transfers_.push_back(std::move(transfer));
    if (!sweep_.isActive())
        sweep_.start(std::chrono::milliseconds(transferDeadline) / 10);
}

void X11SelectionServer::sendChunk(Transfer& transfer) {
    const auto slice = wholeCharacters(transfer.text.view(), transfer.offset, chunkSize_);
    const std::string converted = transfer.encoding == Encoding::latin1 ? latin1FromUtf8(slice) : std::string();
    const std::string_view bytes = transfer.encoding == Encoding::latin1 ? converted : slice;
    xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, transfer.requestor, transfer.property, transfer.type,
                        8, static_cast<std::uint32_t>(bytes.size()), bytes.data());
    transfer.offset += slice.size();
    transfer.lastProgress = std::chrono::steady_clock::now();
}

void X11SelectionServer::handleProperty(const xcb_property_notify_event_t& change) {
    if (change.state != XCB_PROPERTY_DELETE)
        return;
    const auto transfer = std::find_if(transfers_.begin(), transfers_.end(), [&](const Transfer& each) {
        return each.requestor == change.window && each.property == change.atom;
    });
    if (transfer == transfers_.end())
        return;
    const bool isLast = transfer->offset == transfer->text.view().size();
    sendChunk(*transfer);  // the last one is empty and says that this was all
    connection_.flush();
    if (isLast)
        endTransfers([&](const Transfer& each) { return &each == &*transfer; });
}

void X11SelectionServer::handleDestroy(const xcb_destroy_notify_event_t& destroyed) {
    endTransfers([&](const Transfer& each) { return each.requestor == destroyed.window; });
}

void X11SelectionServer::endStalledTransfers() {
    const auto now = std::chrono::steady_clock::now();
    endTransfers([&](const Transfer& each) { return now - each.lastProgress > transferDeadline; });
    if (transfers_.empty())
        sweep_.stop();
}

void X11SelectionServer::endTransfers(const std::function<bool(const Transfer&)>& isOver) {
    const auto kept = std::stable_partition(transfers_.begin(), transfers_.end(), std::not_fn(isOver));
    std::vector<xcb_window_t> left;
    std::transform(kept, transfers_.end(), std::back_inserter(left), [](const auto& each) { return each.requestor; });
    transfers_.erase(kept, transfers_.end());
    for (const auto requestor : left) {
        const std::uint32_t none = XCB_EVENT_MASK_NO_EVENT;
        if (std::none_of(transfers_.begin(), transfers_.end(),
                         [&](const auto& each) { return each.requestor == requestor; }))
            xcb_change_window_attributes(connection_.get(), requestor, XCB_CW_EVENT_MASK, &none);
    }
}

}  // namespace brindle
