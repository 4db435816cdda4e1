#pragma once

#include <QTimer>
#include <chrono>
#include <cstddef>
#include <list>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/SharedText.h"
#include "platform/x11/X11Connection.h"

namespace brindle {

/// Owns selections and serves their text to other programs (ICCCM, 2.2), a large one chunk by chunk as the requestor
/// takes it. A transfer goes on when the selection is lost meanwhile; it ends with the requestor's window or when the
/// requestor takes nothing for a while. Every reader gets its bytes straight from the one shared body.
class X11SelectionServer {
public:
    static constexpr std::chrono::seconds transferDeadline{10};  ///< without progress

    explicit X11SelectionServer(X11Connection& connection);
    X11SelectionServer(const X11SelectionServer&) = delete;
    X11SelectionServer& operator=(const X11SelectionServer&) = delete;
    ~X11SelectionServer();

    [[nodiscard]] xcb_window_t window() const { return window_; }

    /// Takes a selection and serves the text, or nothing. The server knows when this returns. Its notice of the new
    /// owner goes to the window above and must be passed on to `noteOwnership`.
    void own(xcb_atom_t selection, std::optional<SharedText> text);
    /// Takes a selection whose owner, since `time`, is gone; unless it has a new one.
    void inherit(xcb_atom_t selection, const SharedText& text, xcb_timestamp_t time);
    /// Asks the desktop's clipboard manager to fetch the text and take over. Its answer goes to the window above; false
    /// when there is nobody to ask.
    bool askToSave(xcb_atom_t selection);
    /// Leaves the selection without an owner, unless another program has it already.
    void giveUp(xcb_atom_t selection);
    void noteOwnership(xcb_atom_t selection, xcb_timestamp_t time);

    [[nodiscard]] bool isOwner(xcb_atom_t selection) const { return owned_.contains(selection); }
    /// Whether the notice of the last `own` is still to come: whatever arrives before it happened before it.
    [[nodiscard]] bool isTaking(xcb_atom_t selection) const;

    void handleRequest(const xcb_selection_request_event_t& request);
    void handleClear(const xcb_selection_clear_event_t& clear);
    void handleProperty(const xcb_property_notify_event_t& change);
    void handleDestroy(const xcb_destroy_notify_event_t& destroyed);

private:
    struct Owned {
        std::optional<SharedText> text;
        xcb_timestamp_t time = XCB_CURRENT_TIME;
        int noticesDue = 0;
    };
    enum class Encoding { utf8, latin1 };
    struct Transfer {
        xcb_window_t requestor;
        xcb_atom_t property;
        xcb_atom_t type;
        Encoding encoding;
        SharedText text;
        std::size_t offset = 0;
        std::chrono::steady_clock::time_point lastProgress;
    };

    bool convert(const Owned& owned, xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property);
    bool convertText(const SharedText& text, xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property);
    bool convertMultiple(const Owned& owned, xcb_window_t requestor, xcb_atom_t property);
    [[nodiscard]] std::vector<xcb_atom_t> textTargetAtoms();
    void announceTargets(const Owned& owned, xcb_window_t requestor, xcb_atom_t property);
    void startTransfer(Transfer transfer);
    void sendChunk(Transfer& transfer);
    void endTransfers(const std::function<bool(const Transfer&)>& isOver);
    void endStalledTransfers();

    X11Connection& connection_;
    xcb_window_t window_;
    std::size_t chunkSize_;  // bytes that one request can carry
    std::unordered_map<xcb_atom_t, Owned> owned_;
    std::list<Transfer> transfers_;
    QTimer sweep_;
};

}  // namespace brindle
