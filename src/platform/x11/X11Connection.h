#pragma once

#include <xcb/xcb.h>

#include <QObject>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "base/Signal.h"

namespace brindle {

struct FreeDeleter {
    void operator()(void* memory) const { std::free(memory); }
};
/// Replies and events of XCB, which come from malloc.
template <typename T>
using XcbPointer = std::unique_ptr<T, FreeDeleter>;

/// A connection to the X server beside the toolkit's, read from the main loop. Main thread. A round trip waits for the
/// server alone, never for another client.
class X11Connection : public QObject {
    Q_OBJECT

public:
    using Handler = std::function<void(const xcb_generic_event_t&)>;

    /// Connects to `$DISPLAY`; null when there is no server or it refuses.
    static std::unique_ptr<X11Connection> open();
    ~X11Connection() override;

    [[nodiscard]] xcb_connection_t* get() const { return connection_; }
    [[nodiscard]] const xcb_screen_t& screen() const { return *screen_; }
    [[nodiscard]] xcb_window_t root() const { return screen_->root; }

    /// The atom of that name, made when there is none yet; remembered.
    [[nodiscard]] xcb_atom_t atom(std::string_view name);
    /// The name of an atom; empty for one that does not exist.
    [[nodiscard]] std::string atomName(xcb_atom_t atom);

    /// Whether the server has the extension, asked when the connection was opened or at first use.
    [[nodiscard]] bool hasExtension(xcb_extension_t& extension);
    /// The number of the first event of a present extension.
    [[nodiscard]] std::uint8_t firstEvent(xcb_extension_t& extension);

    /// Calls the handler for each event of that type, whichever window it is for; an extension's events count from
    /// `firstEvent`. Handlers of one type run in the order in which they came.
    [[nodiscard]] Subscription onEvent(std::uint8_t type, Handler handler);
    /// The same for generic events (XInput 2), by extension and event type.
    [[nodiscard]] Subscription onGenericEvent(xcb_extension_t& extension, std::uint16_t type, Handler handler);

    /// Adds to the events that this client wants of a window.
    void selectEvents(xcb_window_t window, std::uint32_t mask);
    /// Wants raw events (`XCB_INPUT_XI_EVENT_MASK_RAW_…`) of all devices, also while somebody grabs them, until the
    /// subscription is let go. Empty when the server has no XInput 2.2: with 2.0 a grab would hide the releases.
    [[nodiscard]] Subscription selectRawEvents(std::uint32_t mask);

    /// The newest of the server's times seen on an event here, never an older one than before; 0, which is the current
    /// time, before the first.
    [[nodiscard]] xcb_timestamp_t lastTime() const { return lastTime_; }

    /// The whole property, up to `limit` bytes; none when the window or the property is gone or of another type.
    [[nodiscard]] std::optional<std::string> property(xcb_window_t window, xcb_atom_t name, xcb_atom_t type,
                                                      std::uint32_t limit = 1U << 20U);
    /// The 32-bit values of a property; empty when there is none.
    [[nodiscard]] std::vector<std::uint32_t> property32(xcb_window_t window, xcb_atom_t name, xcb_atom_t type);
    /// The first 32-bit value, or 0.
    [[nodiscard]] std::uint32_t firstOfProperty32(xcb_window_t window, xcb_atom_t name, xcb_atom_t type);

    /// The window that owns a selection; none when nobody does.
    [[nodiscard]] xcb_window_t selectionOwner(xcb_atom_t selection);

    void flush() { xcb_flush(connection_); }

    /// Waits for events without a main loop and handles them; for a program that is about to end.
    void handleEventsWithin(std::chrono::milliseconds limit);

private:
    explicit X11Connection(xcb_connection_t* connection, int screenNumber);
    void readEvents();
    void dispatchQueued();
    void dispatch(const xcb_generic_event_t& event);
    void noteTime(const xcb_generic_event_t& event);
    [[nodiscard]] bool announcesXInput();
    void applyRawEvents();

    xcb_connection_t* connection_;
    xcb_screen_t* screen_ = nullptr;
    std::unordered_map<std::string, xcb_atom_t> atoms_;
    std::unordered_map<std::uint32_t, Signal<const xcb_generic_event_t&>> handlers_;
    std::unordered_map<xcb_window_t, std::uint32_t> eventMasks_;
    std::unordered_multiset<std::uint32_t> rawMasks_;
    std::optional<bool> hasXInput_;
    xcb_timestamp_t lastTime_ = XCB_CURRENT_TIME;
};

}  // namespace brindle
