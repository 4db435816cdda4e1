#include "platform/x11/X11TestPeer.h"

#include <array>
#include <cstring>

namespace brindle {

TestPeer::TestPeer() : connection_(X11Connection::open()), window_(xcb_generate_id(connection_->get())) {
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(connection_->get(), 0, window_, connection_->root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    events_.push_back(connection_->onEvent(XCB_SELECTION_REQUEST, [this](const auto& event) {
        handleRequest(reinterpret_cast<const xcb_selection_request_event_t&>(event));
    }));
    events_.push_back(connection_->onEvent(XCB_PROPERTY_NOTIFY, [this](const auto& event) {
        handleProperty(reinterpret_cast<const xcb_property_notify_event_t&>(event));
    }));
    events_.push_back(connection_->onEvent(XCB_SELECTION_NOTIFY, [this](const auto& event) {
        handleNotify(reinterpret_cast<const xcb_selection_notify_event_t&>(event));
    }));
}

void TestPeer::die() {
    events_.clear();
    connection_.reset();
}

void TestPeer::own(const char* selection) {
    xcb_set_selection_owner(connection_->get(), window_, connection_->atom(selection), XCB_CURRENT_TIME);
    connection_->flush();
}

void TestPeer::drop() {
    xcb_set_selection_owner(connection_->get(), XCB_NONE, connection_->atom("CLIPBOARD"), XCB_CURRENT_TIME);
    connection_->flush();
}

void TestPeer::handleRequest(const xcb_selection_request_event_t& request) {
    ++requestsSeen;
    const auto target = connection_->atomName(request.target);
    const auto found = answers.find(target);
    TestAnswer given{TestAnswer::Way::refusal};
    if (found != answers.end()) {
        given = found->second;
    } else if (target == "TARGETS") {
        given = TestAnswer::text("", "ATOM");
        for (const auto& [name, ignored] : answers) {
            const auto atom = connection_->atom(name);
            given.pieces[0].append(reinterpret_cast<const char*>(&atom), sizeof atom);
        }
    }
    answer(request, given);
    connection_->flush();
}

void TestPeer::answer(const xcb_selection_request_event_t& request, const TestAnswer& given) {
    switch (given.way) {
        case TestAnswer::Way::refusal:
            notify(request, XCB_ATOM_NONE);
            return;
        case TestAnswer::Way::taking:  // the clipboard once more, instead of an answer
            own();
            return;
        case TestAnswer::Way::silence:
            held_.push_back(request);
            return;
        case TestAnswer::Way::whole:
            put(request.requestor, request.property, given.type, given.pieces[0]);
            break;
        default: {
            const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
            const std::uint32_t falseSize = 0xFFFFFFFF;
            xcb_change_window_attributes(connection_->get(), request.requestor, XCB_CW_EVENT_MASK, &events);
            xcb_change_property(connection_->get(), XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                                connection_->atom("INCR"), 32, 1, &falseSize);
            sendings_.push_back({request.requestor, request.property, given});
        }
    }
    notify(request, request.property);
}

void TestPeer::answerHeldRequests() {
    for (const auto& request : held_)
        answer(request, TestAnswer::text("late"));
    connection_->flush();
}

void TestPeer::notify(const xcb_selection_request_event_t& request, xcb_atom_t property) {
    xcb_selection_notify_event_t notice{};
    notice.response_type = XCB_SELECTION_NOTIFY;
    notice.time = request.time;
    notice.requestor = request.requestor;
    notice.selection = request.selection;
    notice.target = request.target;
    notice.property = property;
    std::array<char, 32> event{};
    std::memcpy(event.data(), &notice, sizeof notice);
    xcb_send_event(connection_->get(), 0, request.requestor, 0, event.data());
}

void TestPeer::put(xcb_window_t window, xcb_atom_t property, const std::string& type, const std::string& bytes) {
    const std::uint8_t format = type == "ATOM" || type == "INTEGER" ? 32 : 8;
    xcb_change_property(connection_->get(), XCB_PROP_MODE_REPLACE, window, property, connection_->atom(type), format,
                        static_cast<std::uint32_t>(bytes.size() / (format / 8U)), bytes.data());
}

void TestPeer::sendNextChunk(Sending& sending) {
    const auto& [way, type, pieces] = sending.answer;
    if (way == TestAnswer::Way::chunksForEver)
        sending.sent = 0;
    if (sending.sent < pieces.size())
        put(sending.requestor, sending.property, type, pieces[sending.sent]);
    else if (sending.sent == pieces.size() && way == TestAnswer::Way::chunks)
        put(sending.requestor, sending.property, type, "");
    ++sending.sent;
    connection_->flush();
}

void TestPeer::handleProperty(const xcb_property_notify_event_t& change) {
    if (change.window == window_ && change.state == XCB_PROPERTY_NEW_VALUE && isChunked_)
        takeProperty();
    for (auto& sending : sendings_) {
        if (change.state == XCB_PROPERTY_DELETE && sending.requestor == change.window &&
            sending.property == change.atom)
            sendNextChunk(sending);
    }
}

void TestPeer::ask(const std::string& target, const char* selection) {
    isAnswered_ = isChunked_ = false;
    arrived_.reset();
    xcb_convert_selection(connection_->get(), window_, connection_->atom(selection), connection_->atom(target),
                          connection_->atom("TEST_ANSWER"), XCB_CURRENT_TIME);
    connection_->flush();
}

std::optional<std::string> TestPeer::paste(const std::string& target, const char* selection) {
    ask(target, selection);
    return await([&] { return isAnswered_; }) ? arrived_ : "(no answer)";
}

void TestPeer::handleNotify(const xcb_selection_notify_event_t& notice) {
    isAnswered_ = notice.property == XCB_ATOM_NONE;
    if (isAnswered_)
        return;
    isChunked_ = connection_->property(window_, notice.property, connection_->atom("INCR")).has_value();
    if (!isChunked_)
        return takeProperty();
    arrived_.emplace();
    xcb_delete_property(connection_->get(), window_, notice.property);
    connection_->flush();
}

void TestPeer::takeProperty() {
    const auto name = connection_->atom("TEST_ANSWER");
    const auto piece = connection_->property(window_, name, XCB_ATOM_ANY, 64U << 20U);
    xcb_delete_property(connection_->get(), window_, name);
    connection_->flush();
    if (!piece)
        return;
    arrived_ = arrived_.value_or("") + *piece;
    isAnswered_ = !isChunked_ || piece->empty();
}

}  // namespace brindle
