#pragma once

#include <xcb/xfixes.h>

#include <QTimer>
#include <cstdint>
#include <optional>
#include <vector>

#include "platform/Pasteboard.h"
#include "platform/x11/X11SelectionReader.h"
#include "platform/x11/X11SelectionServer.h"

namespace brindle {

/// The CLIPBOARD selection. It is read and served here and not by the toolkit, whose clipboard waits for other
/// programs, takes a selection only with the time of its own last event, and so fails to take it after a key that was
/// grabbed on another connection. What the toolkit puts there (a copy in a text field of ours) is read like any other
/// program's.
///
/// While an owner lives nobody takes the selection from it, so that what else it offers is pasted unharmed. When it
/// ends without having emptied the clipboard, its text, if it was had, is served from here on as the same change.
///
/// One rule follows: nothing in this process may read CLIPBOARD through the toolkit, which would wait for the main
/// thread to serve it.
class X11Pasteboard final : public Pasteboard {
public:
    /// The connection is this object's alone.
    explicit X11Pasteboard(X11Connection& connection, X11ReadLimits limits = {});

    [[nodiscard]] std::int64_t changeCount() const override { return changeCount_; }
    [[nodiscard]] std::optional<SharedText> string() const override { return text_; }
    void clearContents() override;
    void setString(const SharedText& text) override;

    /// Before the program ends: has the desktop's clipboard manager, if there is one, take over the text that is served
    /// here. Returns when it has or after a second; nothing but the clipboard's events is handled meanwhile.
    void handOver();

    /// Owns the PRIMARY selection with this text, for programs that paste from nowhere else. Who had it before does not
    /// get it back.
    void lendPrimary(const SharedText& text);
    /// Leaves PRIMARY without an owner, unless somebody has taken it meanwhile. Text asked for already still arrives.
    void returnPrimary();

private:
    void subscribe();
    void readPresentOwner();
    void handleNotice(const xcb_xfixes_selection_notify_event_t& notice);
    void watch(xcb_atom_t selection, std::uint32_t events);
    void settle(std::optional<SharedText> text);

    X11Connection& connection_;
    xcb_atom_t clipboard_;
    bool hasNotices_;  // of other programs that take or leave a selection
    X11SelectionServer server_;
    X11SelectionReader reader_;
    QTimer heldClearing_;  // real at the end of the turn, so that clearing and setting are one change of ownership
    std::int64_t changeCount_ = 0;
    std::optional<SharedText> text_;
    std::vector<Subscription> events_;
};

}  // namespace brindle
