#pragma once

#include <QPoint>
#include <QWidget>
#include <optional>

namespace brindle {

/// The program's icon, to be dragged to where programs are asked for: it stands for the program's executable. Without
/// an icon it is empty.
class DraggableAppIcon final : public QWidget {
    Q_OBJECT
public:
    static constexpr int iconSize = 80;    ///< points
    static constexpr int shadowRoom = 12;  ///< points around the icon that belong to the widget

    explicit DraggableAppIcon(QWidget* parent = nullptr);

protected:
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    std::optional<QPoint> pressedAt_;
};

}  // namespace brindle
