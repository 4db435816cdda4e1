#include <fuzzer/FuzzedDataProvider.h>

#include <QCoreApplication>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>

#include "base/Log.h"
#include "base/Unicode.h"
#include "platform/x11/X11SelectionReader.h"

using namespace brindle;

namespace {

constexpr xcb_window_t rootWindow = 1;
constexpr xcb_atom_t selection = 2;
constexpr std::size_t largestText = 200;  // bytes

constexpr std::array<std::string_view, 9> atoms = {"TARGETS", "UTF8_STRING", "text/plain;charset=utf-8",
                                                   "STRING",  "text/plain",  "x-kde-passwordManagerHint",
                                                   "INCR",    "ATOM",        "other"};

xcb_atom_t atomOf(std::string_view name) {
    return static_cast<xcb_atom_t>(std::find(atoms.begin(), atoms.end(), name) - atoms.begin()) + 100;
}

void expect(bool holds) {
    if (!holds)
        std::abort();
}

/// The server and an owner of the selection that do what the input says, and what they gave for the last request.
struct Peer {
    FuzzedDataProvider input;
    xcb_window_t lastWindow = rootWindow;
    xcb_convert_selection_request_t request{};
    bool isChunked = false;
    std::optional<SelectionEncoding> encoding;
    std::string given;
    std::uint8_t format = 0;
    bool isWhole = false;

    /// Whether the answer to the last request lets the reader ask for this target: what may be a secret is asked first.
    [[nodiscard]] bool allows(xcb_atom_t target) const {
        const auto hint = atomOf("x-kde-passwordManagerHint");
        if (request.target == hint)
            return isWhole && !given.starts_with("secret");
        if (request.target != atomOf("TARGETS") || !isWhole || format != 32 || target == hint)
            return true;
        const std::string_view wanted(reinterpret_cast<const char*>(&hint), sizeof hint);
        for (std::size_t at = 0; at + wanted.size() <= given.size(); at += wanted.size()) {
            if (given.compare(at, wanted.size(), wanted) == 0)
                return false;
        }
        return true;
    }
};
Peer* peer = nullptr;

}  // namespace

// These take the place of the library's.

extern "C" {

std::uint32_t xcb_generate_id(xcb_connection_t*) {
    return ++peer->lastWindow;
}

xcb_void_cookie_t xcb_create_window(xcb_connection_t*, std::uint8_t, xcb_window_t, xcb_window_t, std::int16_t,
                                    std::int16_t, std::uint16_t, std::uint16_t, std::uint16_t, std::uint16_t,
                                    xcb_visualid_t, std::uint32_t, const void*) {
    return {};
}

xcb_void_cookie_t xcb_destroy_window(xcb_connection_t*, xcb_window_t) {
    return {};
}

xcb_void_cookie_t xcb_delete_property(xcb_connection_t*, xcb_window_t, xcb_atom_t) {
    return {};
}

int xcb_flush(xcb_connection_t*) {
    return 1;
}

xcb_void_cookie_t xcb_convert_selection(xcb_connection_t*, xcb_window_t requestor, xcb_atom_t, xcb_atom_t target,
                                        xcb_atom_t property, xcb_timestamp_t time) {
    expect(target == atomOf("TARGETS") || peer->allows(target));
    peer->isWhole = false;
    peer->request.requestor = requestor;
    peer->request.target = target;
    peer->request.property = property;
    peer->request.time = time;
    peer->isChunked = false;
    peer->encoding.reset();
    peer->given.clear();
    return {};
}

xcb_get_property_cookie_t xcb_get_property(xcb_connection_t*, std::uint8_t, xcb_window_t, xcb_atom_t, xcb_atom_t,
                                           std::uint32_t, std::uint32_t) {
    return {};
}

xcb_get_property_reply_t* xcb_get_property_reply(xcb_connection_t*, xcb_get_property_cookie_t, xcb_generic_error_t**) {
    auto& input = peer->input;
    if (input.ConsumeProbability<float>() < 0.05F)
        return nullptr;
    const auto type = input.ConsumeBool() ? peer->request.target : atomOf(input.PickValueInArray(atoms));
    const std::uint8_t format = input.PickValueInArray<std::uint8_t>({8, 8, 16, 32});
    std::string value = input.ConsumeRandomLengthString(300);
    if (format == 32 && input.ConsumeBool()) {  // targets
        value.clear();
        for (int count = input.ConsumeIntegralInRange(0, 6); count > 0; --count) {
            const auto target = atomOf(input.PickValueInArray(atoms));
            value.append(reinterpret_cast<const char*>(&target), sizeof target);
        }
    }
    value.resize(value.size() - value.size() % (format / 8U));
    auto* const reply =
        static_cast<xcb_get_property_reply_t*>(std::calloc(1, sizeof(xcb_get_property_reply_t) + value.size()));
    reply->type = type;
    reply->format = format;
    reply->value_len = static_cast<std::uint32_t>(value.size() / (format / 8U));
    reply->bytes_after = input.ConsumeBool() ? input.ConsumeIntegral<std::uint32_t>() : 0;
    std::memcpy(reply + 1, value.data(), value.size());
    const bool isStart = type == atomOf("INCR") && !peer->isChunked;
    peer->isChunked = peer->isChunked || isStart;
    peer->isWhole = !isStart && reply->bytes_after == 0 && (!peer->isChunked || value.empty());
    peer->format = format;
    if (!isStart) {
        if (!peer->encoding && type >= atomOf(atoms.front()))
            peer->encoding = selectionEncoding(std::string(atoms[type - atomOf(atoms.front())]));
        peer->given += value;
    }
    return reply;
}

}  // extern "C"

namespace brindle {

std::unique_ptr<X11Connection> X11Connection::open() {
    return std::unique_ptr<X11Connection>(new X11Connection(nullptr, 0));
}

X11Connection::X11Connection(xcb_connection_t* connection, int) : connection_(connection) {
    static xcb_screen_t screen{rootWindow};
    screen_ = &screen;
}

X11Connection::~X11Connection() = default;

xcb_atom_t X11Connection::atom(std::string_view name) {
    const auto known = atomOf(name);
    return known < atomOf("") ? known : static_cast<xcb_atom_t>(1000 + name.back());  // the reader's own properties
}

}  // namespace brindle

/// However owner and server answer, late, in part, in chunks or with nonsense: one completion for each read at most,
/// and none that is abandoned; the text is what was given, well-formed and not too large; and no secret is asked for.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    static int argumentCount = 1;
    static char name[] = "selection_reader";
    static char* arguments[] = {name, nullptr};
    static const QCoreApplication application(argumentCount, arguments);
    setLogSink([](std::string_view) {});
    Peer now{FuzzedDataProvider(bytes, count)};
    peer = &now;

    const auto connection = X11Connection::open();
    int pending = 0;
    X11ReadLimits limits{.deadline = 1000, .longestRead = 1000, .largestText = largestText};
    if (now.input.ConsumeBool())
        limits.deadline = 0;
    X11SelectionReader reader(*connection, selection, limits, [&](std::optional<SharedText> text) {
        expect(pending-- == 1);
        if (!text)
            return;
        expect(now.encoding.has_value());
        SelectionTextDecoder whole(*now.encoding);
        whole.append(now.given);
        expect(text->string() == whole.take() && unicode::isWellFormed(text->view()));
        constexpr std::size_t cutOff = 9;  // bytes; a replacement for each byte of a character that has no end
        expect(text->string().size() <= largestText + cutOff);
    });
    while (now.input.remaining_bytes() > 0) {
        const auto& request = now.request;
        switch (now.input.ConsumeIntegralInRange(0, 7)) {
            case 0:
                now.request.target = XCB_ATOM_NONE;
                pending = 1;
                reader.start(rootWindow, now.input.ConsumeIntegralInRange<xcb_timestamp_t>(1, 9));
                break;
            case 1:
                reader.abandon();
                pending = 0;
                break;
            case 2:
                QCoreApplication::processEvents();
                break;
            case 3:  // a refusal, or an answer to something else
                reader.handleAnswer({.time = now.input.ConsumeBool() ? request.time : 7,
                                     .requestor = now.input.ConsumeBool() ? request.requestor : rootWindow,
                                     .selection = selection,
                                     .target = now.input.ConsumeBool() ? request.target : atomOf("other"),
                                     .property = now.input.ConsumeBool() ? XCB_ATOM_NONE : atomOf("other")});
                break;
            case 4:
            case 5:
                reader.handleAnswer({.time = request.time,
                                     .requestor = request.requestor,
                                     .selection = selection,
                                     .target = request.target,
                                     .property = request.property});
                break;
            default:
                reader.handleProperty(
                    {.window = request.requestor,
                     .atom = now.input.ConsumeProbability<float>() < 0.9F ? request.property : atomOf("other"),
                     .state = XCB_PROPERTY_NEW_VALUE});
        }
    }
    return 0;
}
