#pragma once

#include <QRect>

namespace brindle {

/// Where a frame of that size goes that hangs below its anchor: 6 points below it and centred on it, below the panel
/// that the anchor is in, above it where there is no room below. It always lies on the available part of the screen as
/// `frameOnScreen` says.
QRect frameBesideAnchor(QRect anchor, QSize size, QRect available);

/// The same frame moved so that it is 8 points from the edges of the available part of the screen. One that is larger
/// shows its top left.
QRect frameOnScreen(QRect frame, QRect available);

}  // namespace brindle
