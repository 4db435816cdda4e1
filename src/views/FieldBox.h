#pragma once

#include <QWidget>
#include <string_view>

#include "views/TextField.h"

namespace brindle {

/// A text field in its box: outline, glow when focused, and a symbol before the text if it has one.
class FieldBox final : public QWidget {
    Q_OBJECT
public:
    /// Room around the box for the glow: the widget is that much larger on each side.
    static constexpr int glow = 3;

    struct Shape {
        double radius = 6;
        int padding = 8;  ///< left and right, up to the symbol or text
        std::string_view symbol = {};
    };

    FieldBox(Published<std::string>& text, const QString& placeholder, Shape shape, QWidget* parent = nullptr);

    [[nodiscard]] TextField& field() { return field_; }
    void setColorScheme(ColorScheme scheme);
    void setBoxGeometry(const QRect& box);  ///< without the glow

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    [[nodiscard]] QRect box() const { return rect().adjusted(glow, glow, -glow, -glow); }

    Shape shape_;
    TextField field_;
    ColorScheme scheme_ = ColorScheme::dark;
};

}  // namespace brindle
