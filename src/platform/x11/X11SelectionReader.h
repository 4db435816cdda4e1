#pragma once

#include <QDeadlineTimer>
#include <QTimer>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/SharedText.h"
#include "platform/Pasteboard.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11SelectionText.h"

namespace brindle {

/// When a read is given up.
struct X11ReadLimits {
    double deadline = Pasteboard::readDeadline;         ///< seconds without progress
    double longestRead = 30.0;                          ///< seconds, however steadily an owner drips
    std::size_t largestText = std::size_t{128} << 20U;  ///< bytes; with six for each it can still be stored
};

/// Fetches the plain text of a selection from the program that owns it (ICCCM, 2.4), step by step from the main loop:
/// first which targets there are, then whether they are a secret, then the best text target. One read at a time.
class X11SelectionReader {
public:
    /// Called once for each read that is not abandoned; none: there is no text, it is a secret, or it could not be had.
    using Completion = std::function<void(std::optional<SharedText>)>;

    X11SelectionReader(X11Connection& connection, xcb_atom_t selection, X11ReadLimits limits, Completion completion);
    X11SelectionReader(const X11SelectionReader&) = delete;
    X11SelectionReader& operator=(const X11SelectionReader&) = delete;
    ~X11SelectionReader();

    /// Starts anew. `owner` is its window and `time` when it took the selection, as its notice says. An owner that
    /// takes it again while it is read gets no more time for that.
    void start(xcb_window_t owner, xcb_timestamp_t time);
    void abandon();
    [[nodiscard]] bool isReading() const { return wait_ != Wait::nothing; }

    [[nodiscard]] bool hasWindow(xcb_window_t window) const;
    void handleAnswer(const xcb_selection_notify_event_t& answer);
    void handleProperty(const xcb_property_notify_event_t& change);

private:
    enum class Stage { targets, hint, text };
    enum class Wait { nothing, answer, nextPiece, chunk };

    [[nodiscard]] xcb_window_t nextWindow();
    void request(xcb_atom_t target);
    void requestNextText();
    void dropProperty();
    void readSoon();
    void readPiece();
    bool accept(const xcb_get_property_reply_t& reply, std::string_view bytes);
    [[nodiscard]] std::optional<SelectionEncoding> encodingOf(xcb_atom_t type);
    void handleWhole();
    void handleTargets();
    void handleRefusal();
    void await(Wait wait);
    void giveUp();
    void finish(std::optional<SharedText> text);

    X11Connection& connection_;
    xcb_atom_t selection_;
    X11ReadLimits limits_;
    Completion completion_;
    std::vector<xcb_window_t> windows_;  // one for each of the last reads
    xcb_window_t window_ = XCB_WINDOW_NONE;
    QTimer patience_;
    QTimer nextPiece_;

    Wait wait_ = Wait::nothing;
    Stage stage_ = Stage::targets;
    xcb_window_t owner_ = XCB_WINDOW_NONE;
    xcb_timestamp_t time_ = XCB_CURRENT_TIME;
    QDeadlineTimer end_;
    std::vector<xcb_atom_t> textTargets_;  // still to be tried, the best one last
    xcb_atom_t target_ = XCB_ATOM_NONE;
    xcb_atom_t property_ = XCB_ATOM_NONE;
    std::size_t reads_ = 0;
    std::uint32_t requests_ = 0;  // of this read

    bool isChunked_ = false;    // the answer comes in chunks (ICCCM, 2.7.2)
    std::uint32_t offset_ = 0;  // in the property, in units of four bytes
    std::uint8_t format_ = 0;
    std::string received_;  // targets or hint
    std::optional<SelectionTextDecoder> decoder_;
};

}  // namespace brindle
