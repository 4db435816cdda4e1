#pragma once

#include <cstdint>
#include <optional>

#include "base/SharedText.h"

namespace brindle {

/// The desktop's general pasteboard (on X11 the CLIPBOARD selection). Main thread; no operation waits for another
/// program. A write of our own ends every reading under way, which then never counts nor shows; the desktop's notice of
/// our own ownership does not count.
class Pasteboard {
public:
    virtual ~Pasteboard() = default;

    static constexpr double readDeadline = 3.0;  ///< seconds without progress after which an owner is given up

    /// Grows by one when what another program put there has arrived here, was refused or did not come in time, and by
    /// one for a write of our own (clearing and setting together). 0 until something is on the pasteboard.
    [[nodiscard]] virtual std::int64_t changeCount() const = 0;

    /// The plain text that belongs to the current count, as well-formed UTF-8; none when there is no text, when its
    /// owner marks it as a secret, or when it could not be had.
    [[nodiscard]] virtual std::optional<SharedText> string() const = 0;

    /// Takes the pasteboard and empties it.
    virtual void clearContents() = 0;

    /// Puts plain text on the pasteboard just cleared; the text is served to others until somebody else takes over.
    virtual void setString(const SharedText& text) = 0;
};

}  // namespace brindle
