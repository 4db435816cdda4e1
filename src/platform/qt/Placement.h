#pragma once

#include <QRect>

namespace brindle {

/// Where a frame of that size goes that hangs below its anchor: 6 points below it and the panel that it is in, centred
/// on it, 8 points from the edges of the available part of the screen; above it where there is no room below. Without
/// room on either side it goes where `frameOnScreen` puts it.
QRect frameBesideAnchor(QRect anchor, QSize size, QRect available);

/// The same frame moved so that it is 8 points from the edges of the available part of the screen. One that is larger
/// shows its top left.
QRect frameOnScreen(QRect frame, QRect available);

}  // namespace brindle
