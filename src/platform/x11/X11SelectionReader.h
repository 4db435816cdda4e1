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
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11SelectionText.h"

namespace brindle {

/// Fetches the plain text of a selection from the program that owns it (ICCCM, 2.4), step by step from the main loop:
/// first which targets there are, then whether they are a secret, then the best text target. One read at a time.
class X11SelectionReader {
public:
    /// Called once for each read that is not abandoned; none: there is no text, it is a secret, or it could not be had.
    using Completion = std::function<void(std::optional<SharedText>)>;

    static constexpr double longestRead = 30.0;                          ///< seconds, however steadily an owner drips
    static constexpr std::size_t largestText = std::size_t{256} << 20U;  ///< bytes; a larger text is refused

    /// `deadline`: seconds without progress after which an owner is given up.
    X11SelectionReader(X11Connection& connection, xcb_atom_t selection, double deadline, Completion completion);
    X11SelectionReader(const X11SelectionReader&) = delete;
    X11SelectionReader& operator=(const X11SelectionReader&) = delete;
    ~X11SelectionReader();

    /// Starts anew; `time` is when the owner took the selection, as its notice says.
    void start(xcb_timestamp_t time);
    void abandon();

    [[nodiscard]] xcb_window_t window() const { return window_; }
    void handleAnswer(const xcb_selection_notify_event_t& answer);
    void handleProperty(const xcb_property_notify_event_t& change);

private:
    enum class Stage { targets, hint, text };
    enum class Wait { nothing, answer, nextPiece, chunk };

    void request(xcb_atom_t target);
    void requestNextText();
    void dropProperty();
    void readPiece();
    bool accept(const xcb_get_property_reply_t& reply, std::string_view bytes);
    [[nodiscard]] std::optional<SelectionEncoding> encodingOf(xcb_atom_t type);
    void handleWhole();
    void handleTargets();
    void handleRefusal();
    void await(Wait wait);
    void finish(std::optional<SharedText> text);

    X11Connection& connection_;
    xcb_atom_t selection_;
    double deadline_;
    Completion completion_;
    xcb_window_t window_;
    QTimer patience_;
    QTimer nextPiece_;

    Wait wait_ = Wait::nothing;
    Stage stage_ = Stage::targets;
    xcb_timestamp_t time_ = XCB_CURRENT_TIME;
    QDeadlineTimer end_;
    std::vector<xcb_atom_t> textTargets_;  // still to be tried, the best one last
    xcb_atom_t target_ = XCB_ATOM_NONE;
    xcb_atom_t property_ = XCB_ATOM_NONE;
    std::uint32_t requests_ = 0;

    bool isChunked_ = false;    // the answer comes in chunks (ICCCM, 2.7.2)
    std::uint32_t offset_ = 0;  // in the property, in units of four bytes
    std::uint8_t format_ = 0;
    std::string received_;  // targets or hint
    std::optional<SelectionTextDecoder> decoder_;
};

}  // namespace brindle
