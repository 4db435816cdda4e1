#include "platform/qt/Placement.h"

#include <algorithm>

namespace brindle {

namespace {

constexpr int anchorGap = 6;  // points
constexpr int edgeGap = 8;    // points

int startOnScreen(int start, int length, int screenStart, int screenLength) {
    const int gap = std::clamp((screenLength - length) / 2, 0, edgeGap);
    const int last = screenStart + screenLength - length - gap;
    return std::max(std::min(start, last), screenStart + gap);
}

}  // namespace

QRect frameBesideAnchor(QRect anchor, QSize size, QRect available) {
    const int availableEnd = available.y() + available.height();
    const int below = std::max(anchor.y() + anchor.height(), available.y()) + anchorGap;
    const int above = std::min(anchor.y(), availableEnd) - anchorGap - size.height();
    const bool isRoomBelow = below + size.height() <= availableEnd - edgeGap;
    const bool isRoomAbove = above >= available.y() + edgeGap;
    const int x = anchor.x() + (anchor.width() - size.width()) / 2;
    const QRect inside = frameOnScreen({QPoint(x, below), size}, available);
    if (!isRoomBelow && !isRoomAbove)
        return inside;
    return {QPoint(inside.x(), isRoomBelow ? below : above), size};
}

QRect frameOnScreen(QRect frame, QRect available) {
    const int x = startOnScreen(frame.x(), frame.width(), available.x(), available.width());
    const int y = startOnScreen(frame.y(), frame.height(), available.y(), available.height());
    return {QPoint(x, y), frame.size()};
}

}  // namespace brindle
