#include <QCoreApplication>
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <map>

#include "base/Log.h"
#include "base/Unicode.h"
#include "platform/x11/X11SelectionReader.h"

// A server and an owner of the clipboard that do what the input says.

namespace {

struct Property {
    xcb_atom_t type;
    std::uint8_t format;
    std::string bytes;
};

std::map<std::string, xcb_atom_t> atoms;
std::map<std::pair<xcb_window_t, xcb_atom_t>, Property> properties;
xcb_selection_request_event_t request;  // the last one
xcb_window_t lastWindow = 0;

void check(bool holds) {
    if (!holds)
        std::abort();
}

}  // namespace

namespace brindle {

X11Connection::X11Connection(xcb_connection_t* connection, int /*screen*/) : connection_(connection) {
    static xcb_screen_t screen{};
    screen_ = &screen;
}
X11Connection::~X11Connection() = default;
std::unique_ptr<X11Connection> X11Connection::open() {
    return std::unique_ptr<X11Connection>(new X11Connection(nullptr, 0));
}
xcb_atom_t X11Connection::atom(std::string_view name) {
    return atoms.try_emplace(std::string(name), 100 + atoms.size()).first->second;
}

}  // namespace brindle

extern "C" {
std::uint32_t xcb_generate_id(xcb_connection_t*) {
    return ++lastWindow;
}
int xcb_flush(xcb_connection_t*) {
    return 1;
}
xcb_void_cookie_t xcb_create_window(xcb_connection_t*, std::uint8_t, xcb_window_t, xcb_window_t, std::int16_t,
                                    std::int16_t, std::uint16_t, std::uint16_t, std::uint16_t, std::uint16_t,
                                    xcb_visualid_t, std::uint32_t, const void*) {
    return {};
}
xcb_void_cookie_t xcb_destroy_window(xcb_connection_t*, xcb_window_t) {
    return {};
}
xcb_void_cookie_t xcb_delete_property(xcb_connection_t*, xcb_window_t window, xcb_atom_t property) {
    properties.erase({window, property});
    return {};
}
xcb_void_cookie_t xcb_convert_selection(xcb_connection_t*, xcb_window_t window, xcb_atom_t selection, xcb_atom_t target,
                                        xcb_atom_t property, xcb_timestamp_t time) {
    request = {0, 0, 0, time, 0, window, selection, target, property};
    return {};
}

static std::pair<xcb_get_property_reply_t, std::string> answer;

xcb_get_property_cookie_t xcb_get_property(xcb_connection_t*, std::uint8_t deletes, xcb_window_t window,
                                           xcb_atom_t name, xcb_atom_t, std::uint32_t offset, std::uint32_t length) {
    answer = {};
    const auto found = properties.find({window, name});
    if (found == properties.end())
        return {};
    const auto& bytes = found->second.bytes;
    const std::size_t start = std::size_t{offset} * 4;
    if (start > bytes.size())
        return {};  // the server's BadValue
    answer.second = bytes.substr(start, std::size_t{length} * 4);
    answer.first.type = found->second.type;
    answer.first.format = found->second.format;
    answer.first.bytes_after = static_cast<std::uint32_t>(bytes.size() - start - answer.second.size());
    if (deletes != 0 && answer.first.bytes_after == 0)
        properties.erase(found);
    return {};
}
xcb_get_property_reply_t* xcb_get_property_reply(xcb_connection_t*, xcb_get_property_cookie_t, xcb_generic_error_t**) {
    auto* const reply = static_cast<xcb_get_property_reply_t*>(std::malloc(sizeof(xcb_get_property_reply_t)));
    *reply = answer.first;
    return reply;
}
void* xcb_get_property_value(const xcb_get_property_reply_t*) {
    return answer.second.data();
}
int xcb_get_property_value_length(const xcb_get_property_reply_t*) {
    return static_cast<int>(answer.second.size());
}
}  // extern "C"

namespace {

using namespace brindle;

class Input {
public:
    Input(const std::uint8_t* bytes, std::size_t count) : rest_(reinterpret_cast<const char*>(bytes), count) {}
    [[nodiscard]] bool isAtEnd() const { return rest_.empty(); }
    std::uint8_t byte() {
        const auto taken = take(1);
        return taken.empty() ? 0 : static_cast<std::uint8_t>(taken[0]);
    }
    std::string take(std::size_t count) {
        std::string taken(rest_.substr(0, count));
        rest_.remove_prefix(taken.size());
        return taken;
    }

private:
    std::string_view rest_;
};

constexpr X11ReadLimits limits{.largestText = std::size_t{1} << 21U};

constexpr const char* types[] = {"UTF8_STRING", "text/plain;charset=utf-8",  "STRING", "text/plain",
                                 "INCR",        "x-kde-passwordManagerHint", "ATOM",   "INTEGER"};

/// Bytes as they come, the word of a password manager, a list of all targets, or more than one piece.
std::string contents(Input& input, X11Connection& connection) {
    const auto count = input.byte();
    std::string bytes = input.take(count & 0x3FU);
    switch (count >> 6U) {
        case 1:
            return "secret" + bytes;
        case 2:
            for (const char* each : types) {
                const auto atom = connection.atom(each);
                bytes.append(reinterpret_cast<const char*>(&atom), sizeof atom);
            }
            return bytes;
        case 3:
            if (count != 0xFF)  // slow, and so the rare one
                return bytes;
            return bytes + std::string((std::size_t{1} << 20U) - 2, 'x') + bytes;
        default:
            return bytes;
    }
}

/// What an owner and the server can do, in any order.
void play(Input& input, X11Connection& connection, X11SelectionReader& reader, int& readsUnderWay) {
    const auto window = request.requestor;
    const auto property = request.property;
    const auto action = input.byte();
    switch (action & 7U) {
        case 0:
            reader.start(action);
            readsUnderWay = 1;
            break;
        case 1:
        case 2:
            properties[{window, property}] = {connection.atom(types[action >> 5U]),
                                              static_cast<std::uint8_t>(action & 8U ? 32 : 8),
                                              contents(input, connection)};
            [[fallthrough]];
        case 3: {
            if ((action & 7U) == 1)
                break;
            xcb_property_notify_event_t change{};
            change.window = window;
            change.atom = property;
            change.state = action & 16U ? XCB_PROPERTY_DELETE : XCB_PROPERTY_NEW_VALUE;
            reader.handleProperty(change);
            break;
        }
        case 4:
        case 5: {
            xcb_selection_notify_event_t notice{};
            notice.requestor = window;
            notice.selection = request.selection;
            notice.target = request.target;
            notice.time = request.time;
            notice.property = (action & 7U) == 4 ? property : xcb_atom_t{XCB_ATOM_NONE};
            reader.handleAnswer(notice);
            break;
        }
        case 6:
            reader.abandon();
            readsUnderWay = 0;
            break;
        default:
            QCoreApplication::processEvents();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    static int arguments = 1;
    static char name[] = "selection";
    static char* names[] = {name, nullptr};
    static const QCoreApplication application(arguments, names);
    setLogSink([](std::string_view /*line*/) {});
    properties.clear();
    request = {};
    const auto connection = X11Connection::open();
    int readsUnderWay = 0;
    {
        X11SelectionReader reader(*connection, 1, limits, [&](std::optional<SharedText> text) {
            check(--readsUnderWay == 0);
            check(!text || (unicode::isWellFormed(text->view()) && text->view().size() <= limits.largestText + 16));
        });
        Input input(bytes, count);
        while (!input.isAtEnd()) {
            play(input, *connection, reader, readsUnderWay);
            check(reader.isReading() == (readsUnderWay != 0));
        }
    }
    return 0;
}
