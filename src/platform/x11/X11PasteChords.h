#pragma once

#include "platform/freedesktop/DesktopEntryIndex.h"

namespace brindle {

/// The keys that paste the pasteboard's text into an application.
enum class PasteChord {
    controlV,       ///< nearly everywhere
    controlShiftV,  ///< terminals, which pass Control+V on to what runs in them
    shiftInsert     ///< what pastes the PRIMARY selection only
};

/// The chord that the window's application takes.
PasteChord pasteChordFor(const WindowNames& names);

}  // namespace brindle
