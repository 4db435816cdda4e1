#pragma once

#include <QObject>
#include <QRectF>
#include <optional>

#include "platform/ColorSchemes.h"

class QPainter;
class QPoint;
class QScrollBar;
class QWidget;

namespace brindle {

/// A thumb over the right edge of what scrolls, without room of its own: seen while it scrolls or is hovered. Positions
/// are those of the viewport.
class OverlayScrollBar final : public QObject {
    Q_OBJECT
public:
    OverlayScrollBar(QScrollBar& model, QWidget& viewport);

    void paint(QPainter& painter, ColorScheme scheme) const;

    /// Takes hold of the thumb if it is there.
    [[nodiscard]] bool press(QPoint position);
    void release();
    void pointerMoved(QPoint position);
    void pointerLeft();

    [[nodiscard]] bool isDragged() const { return grabOffset_.has_value(); }
    [[nodiscard]] bool isOverThumb(QPoint position) const;

private:
    [[nodiscard]] QRectF thumb() const;
    [[nodiscard]] bool isShown() const;
    void linger();
    void setHovered(bool isHovered);

    QScrollBar& model_;
    QWidget& viewport_;
    std::optional<double> grabOffset_;  ///< from the thumb's top to the pointer that holds it
    bool isHovered_ = false;
    int lingering_ = 0;  ///< scrolls of the last moment
};

}  // namespace brindle
