#pragma once

#include <Qt>

class QColor;
class QPainter;
class QRectF;

namespace brindle {

/// Whether an element shows that it has the keyboard: only after Tab or arrow keys led there, never after a click.
class FocusRing {
public:
    void gained(Qt::FocusReason reason) {
        if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason)
            isShown_ = true;
        else if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason)
            isShown_ = false;
    }
    void reachedByKey() { isShown_ = true; }
    void clicked() { isShown_ = false; }

    [[nodiscard]] bool isShown() const { return isShown_; }

private:
    bool isShown_ = false;
};

/// Two points wide, inside the rectangle, whose corners have that radius.
void paintFocusRing(QPainter& painter, const QRectF& place, double radius, const QColor& color);

/// A filled rectangle with round corners.
void fillRounded(QPainter& painter, const QRectF& place, double radius, const QColor& color);

/// A line of that width just inside the rectangle.
void strokeRounded(QPainter& painter, const QRectF& place, double radius, double width, const QColor& color);

}  // namespace brindle
