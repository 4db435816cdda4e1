#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/RunningApplication.h"
#include "platform/freedesktop/DesktopEntryIndex.h"

namespace brindle {
class X11Connection;
}

/// What other programs' windows say about themselves. A window that is gone says nothing. Main thread.
namespace brindle::x11 {

/// Whether a window manager runs and understands that message or property of the root window.
bool managerSupports(X11Connection& connection, std::string_view feature);

/// The window that has the focus: what the window manager reports, else the client window with the input focus, else
/// the one under the pointer when the focus follows it. 0: none.
xcb_window_t activeWindow(X11Connection& connection);

/// The window that keys go to: the active one, or where that is not on the screen, which some window managers go on
/// reporting, the one with the input focus. 0: none.
xcb_window_t receiverOfKeys(X11Connection& connection);

WindowNames namesOf(X11Connection& connection, xcb_window_t window);

/// The process on this machine that owns the window; -1 when the window does not tell.
std::int32_t processOf(X11Connection& connection, xcb_window_t window);

/// Windows that a taskbar lists are regular. A dialog of another window is regular although window managers keep it
/// out of the taskbar.
ActivationPolicy policyOf(X11Connection& connection, xcb_window_t window);

bool exists(X11Connection& connection, xcb_window_t window);
bool isShown(X11Connection& connection, xcb_window_t window);

/// The window that this one is a dialog of; 0 when it is none.
xcb_window_t ownerOf(X11Connection& connection, xcb_window_t window);

/// Whether `window` is `owner` or a dialog of it, at any depth.
bool isOrBelongsTo(X11Connection& connection, xcb_window_t window, xcb_window_t owner);

/// The windows under the pointer from the root's child inwards; empty over the bare root.
std::vector<xcb_window_t> underPointer(X11Connection& connection);

/// Whether it is one by its type or belongs to another window.
bool isDialog(X11Connection& connection, xcb_window_t window);

bool isDock(X11Connection& connection, xcb_window_t window);

}  // namespace brindle::x11
