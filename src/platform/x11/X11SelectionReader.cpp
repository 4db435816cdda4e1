#include "platform/x11/X11SelectionReader.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstring>
#include <utility>

#include "base/Log.h"

namespace brindle {

namespace {

using std::chrono::milliseconds;

// About a millisecond of copying, so that a large text does not hold up the main loop.
constexpr std::uint32_t pieceLength = 1U << 18U;  // units of four bytes
constexpr std::size_t longestList = 1U << 16U;    // bytes of targets or hint that are looked at

// A late answer belongs to its read by its window, and a refusal by nothing else. The windows stay for a while: some
// owners do not survive that a requestor's window is gone.
constexpr std::size_t windowCount = 256;

constexpr std::array textTargetsBestFirst = {"UTF8_STRING", "text/plain;charset=utf-8", "STRING", "text/plain"};
constexpr const char* secretHint = "x-kde-passwordManagerHint";

milliseconds inMilliseconds(double seconds) {
    return std::chrono::ceil<milliseconds>(std::chrono::duration<double>(seconds));
}

}  // namespace

X11SelectionReader::X11SelectionReader(X11Connection& connection, xcb_atom_t selection, X11ReadLimits limits,
                                       Completion completion)
    : connection_(connection), selection_(selection), limits_(limits), completion_(std::move(completion)) {
    patience_.setSingleShot(true);
    patience_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&patience_, &QTimer::timeout, &patience_, [this] { giveUp(); });
    nextPiece_.setSingleShot(true);
    QObject::connect(&nextPiece_, &QTimer::timeout, &nextPiece_, [this] { readPiece(); });
}

X11SelectionReader::~X11SelectionReader() {
    for (const auto window : windows_)
        xcb_destroy_window(connection_.get(), window);
}

void X11SelectionReader::start(xcb_window_t owner, xcb_timestamp_t time) {
    if (!isReading() || owner != owner_)
        end_ = QDeadlineTimer(inMilliseconds(limits_.longestRead));
    abandon();
    owner_ = owner;
    window_ = nextWindow();
    requests_ = 0;
    time_ = time;
    stage_ = Stage::targets;
    request(connection_.atom("TARGETS"));
}

xcb_window_t X11SelectionReader::nextWindow() {
    const std::size_t index = reads_++ % windowCount;
    if (index == windows_.size()) {
        windows_.push_back(xcb_generate_id(connection_.get()));
        const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_create_window(connection_.get(), 0, windows_.back(), connection_.root(), -1, -1, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    }
    return windows_[index];
}

bool X11SelectionReader::hasWindow(xcb_window_t window) const {
    return std::find(windows_.begin(), windows_.end(), window) != windows_.end();
}

void X11SelectionReader::abandon() {
    dropProperty();
    wait_ = Wait::nothing;
    patience_.stop();
    nextPiece_.stop();
    received_ = {};
    decoder_.reset();
    textTargets_.clear();
}

void X11SelectionReader::dropProperty() {
    if (const auto property = std::exchange(property_, XCB_ATOM_NONE); property != XCB_ATOM_NONE)
        xcb_delete_property(connection_.get(), window_, property);
}

void X11SelectionReader::request(xcb_atom_t target) {
    dropProperty();
    target_ = target;
    property_ = connection_.atom("BRINDLE_SELECTION_" + std::to_string(requests_++));
    offset_ = 0;
    isChunked_ = false;
    received_.clear();
    decoder_.reset();
    xcb_convert_selection(connection_.get(), window_, selection_, target_, property_, time_);
    await(Wait::answer);
    connection_.flush();
}

void X11SelectionReader::requestNextText() {
    if (textTargets_.empty()) {
        finish(std::nullopt);
        return;
    }
    stage_ = Stage::text;
    const xcb_atom_t target = textTargets_.back();
    textTargets_.pop_back();
    request(target);
}

void X11SelectionReader::handleAnswer(const xcb_selection_notify_event_t& answer) {
    if (answer.requestor != window_ || answer.selection != selection_ || wait_ != Wait::answer)
        return;
    if (answer.time != time_ && answer.time != XCB_CURRENT_TIME)
        return;
    if (answer.property == property_)
        readPiece();
    else if (answer.property == XCB_ATOM_NONE && answer.target == target_)
        handleRefusal();
}

void X11SelectionReader::handleProperty(const xcb_property_notify_event_t& change) {
    if (change.state != XCB_PROPERTY_NEW_VALUE)
        return;
    if (change.window != window_ || change.atom != property_) {
        // Belongs to a request given up. An owner that sends in chunks runs out sooner when they are taken away. One
        // that never does is left alone when the time of the read is over.
        if (end_.hasExpired())
            return;
        xcb_delete_property(connection_.get(), change.window, change.atom);
        connection_.flush();
    } else if (wait_ == Wait::chunk) {
        readSoon();
    }
}

void X11SelectionReader::readSoon() {
    // On a later turn: an owner may send as fast as we read.
    nextPiece_.start(0);
    await(Wait::nextPiece);
}

void X11SelectionReader::readPiece() {
    // Takes the property away when this piece is its last one.
    const auto cookie =
        xcb_get_property(connection_.get(), 1, window_, property_, XCB_GET_PROPERTY_TYPE_ANY, offset_, pieceLength);
    const XcbPointer<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection_.get(), cookie, nullptr));
    if (!reply || reply->type == XCB_ATOM_NONE) {
        handleRefusal();
        return;
    }
    if (!isChunked_ && reply->type == connection_.atom("INCR")) {
        isChunked_ = true;  // what it says of the size is not to be relied upon
        await(Wait::chunk);
        return;
    }
    const std::string_view bytes(static_cast<const char*>(xcb_get_property_value(reply.get())),
                                 static_cast<std::size_t>(xcb_get_property_value_length(reply.get())));
    const bool isEndOfChunks = offset_ == 0 && bytes.empty();
    if (!accept(*reply, bytes))
        return;
    if (reply->bytes_after > 0) {
        offset_ += pieceLength;
        readSoon();
    } else if (isChunked_ && !isEndOfChunks) {
        offset_ = 0;
        await(Wait::chunk);
    } else {
        handleWhole();
    }
}

bool X11SelectionReader::accept(const xcb_get_property_reply_t& reply, std::string_view bytes) {
    if (stage_ != Stage::text) {
        format_ = reply.format;
        received_ += bytes.substr(0, longestList - std::min(longestList, received_.size()));
        return true;
    }
    if (!decoder_) {
        const auto encoding = reply.format == 8 ? encodingOf(reply.type) : std::nullopt;
        if (!encoding) {
            handleRefusal();
            return false;
        }
        decoder_.emplace(*encoding);
    }
    decoder_->append(bytes);
    if (decoder_->size() <= limits_.largestText)
        return true;
    log("A text of more than " + std::to_string(limits_.largestText >> 20U) + " MiB on the clipboard is left out.");
    finish(std::nullopt);
    return false;
}

std::optional<SelectionEncoding> X11SelectionReader::encodingOf(xcb_atom_t type) {
    for (const char* name : textTargetsBestFirst) {
        if (connection_.atom(name) == type)
            return selectionEncoding(name);
    }
    return std::nullopt;
}

void X11SelectionReader::handleWhole() {
    if (stage_ == Stage::targets)
        handleTargets();
    else if (stage_ == Stage::text)
        finish(SharedText(decoder_->take()));
    else if (received_.starts_with("secret"))
        finish(std::nullopt);
    else
        requestNextText();
}

void X11SelectionReader::handleTargets() {
    if (format_ != 32) {
        handleRefusal();
        return;
    }
    std::vector<xcb_atom_t> offered(received_.size() / sizeof(xcb_atom_t));
    if (!offered.empty())
        std::memcpy(offered.data(), received_.data(), offered.size() * sizeof(xcb_atom_t));
    const auto isOffered = [&](xcb_atom_t target) {
        return std::find(offered.begin(), offered.end(), target) != offered.end();
    };
    for (const char* name : textTargetsBestFirst) {
        if (const auto target = connection_.atom(name); isOffered(target))
            textTargets_.insert(textTargets_.begin(), target);
    }
    const auto hint = connection_.atom(secretHint);
    if (textTargets_.empty() || !isOffered(hint)) {
        requestNextText();
        return;
    }
    stage_ = Stage::hint;
    request(hint);
}

void X11SelectionReader::handleRefusal() {
    // Who marks a text and does not say as what may well have marked a secret.
    if (stage_ == Stage::hint) {
        finish(std::nullopt);
        return;
    }
    // Some owners know no TARGETS and yet give a text.
    if (stage_ == Stage::targets)
        textTargets_ = {connection_.atom("STRING"), connection_.atom("UTF8_STRING")};
    requestNextText();
}

void X11SelectionReader::await(Wait wait) {
    wait_ = wait;
    if (end_.hasExpired())
        giveUp();
    else
        patience_.start(std::min(inMilliseconds(limits_.deadline),
                                 inMilliseconds(static_cast<double>(end_.remainingTime()) / 1000)));
}

void X11SelectionReader::giveUp() {
    log("The program that owns the clipboard does not answer in time; its text is left out.");
    finish(std::nullopt);
}

void X11SelectionReader::finish(std::optional<SharedText> text) {
    abandon();
    completion_(std::move(text));
}

}  // namespace brindle
