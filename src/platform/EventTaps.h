#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "platform/KeyCodes.h"
#include "platform/KeyEvents.h"

namespace brindle {

enum class TapPlacement { headInsert = 0 };
enum class TapOptions { active = 0 };
enum class TapVerdict { passOn, remove };

constexpr std::uint64_t keyDownMask = 0x400;

/// A key-down event as a tap sees it.
struct TappedKey {
    VirtualKey key;
    std::uint64_t flags;  ///< `eventFlags`
};

/// An installed tap; it ends when it is destroyed.
class EventTap {
public:
    virtual ~EventTap() = default;
    virtual void enable(bool isEnabled) = 0;
};

/// What a tap wants to see. A desktop that cannot show every key press delivers each press of `key` while `flags` are
/// held, whatever other modifiers are held too, and nothing else; such a press is taken from the applications already,
/// and `passOn` counts as `remove`.
struct TapRequest {
    EventTapLocation location = EventTapLocation::session;
    TapPlacement placement = TapPlacement::headInsert;
    TapOptions options = TapOptions::active;
    std::uint64_t eventsOfInterest = keyDownMask;
    VirtualKey key;
    std::uint64_t flags;
};

/// Key presses before any application sees them.
class EventTaps {
public:
    virtual ~EventTaps() = default;

    /// The callback runs on the main thread for each press, auto-repeats included, and says whether the press goes on
    /// to the applications. Null when the desktop refuses, for example because another program holds the combination;
    /// one that others hold with further modifiers only is left to them.
    [[nodiscard]] virtual std::unique_ptr<EventTap> create(const TapRequest& request,
                                                           std::function<TapVerdict(const TappedKey&)> callback) = 0;
};

}  // namespace brindle
