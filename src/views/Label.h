#pragma once

#include <QWidget>

#include "platform/ColorSchemes.h"
#include "views/Fonts.h"
#include "views/Palette.h"

class QTextLayout;

namespace brindle {

/// Plain text that is only read: as many lines as it takes, broken between words. Its size is up to whoever places it.
class Label final : public QWidget {
    Q_OBJECT
public:
    struct Look {
        TextStyle style = TextStyle::body;
        Role color = Role::primaryText;
        Qt::Alignment alignment = Qt::AlignLeft;
    };

    Label(const QString& text, Look look, QWidget* parent = nullptr);

    void setColorScheme(ColorScheme scheme);
    [[nodiscard]] const QString& text() const { return text_; }
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    /// What its lines take at that width, in points.
    [[nodiscard]] int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    /// Breaks the text into lines of that width and answers how many they are.
    int layOut(QTextLayout& layout, double width) const;

    QString text_;
    Look look_;
    ColorScheme scheme_ = ColorScheme::dark;
};

}  // namespace brindle
