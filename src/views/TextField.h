#pragma once

#include <QLineEdit>
#include <string>

#include "base/Published.h"
#include "platform/ColorSchemes.h"

namespace brindle {

/// A line of text without a frame, bound both ways to a published text. Copying and pasting go through the program's
/// own pasteboard, which never waits for the program that owns the clipboard.
class TextField final : public QLineEdit {
    Q_OBJECT
public:
    /// Between the widget's left edge and its text.
    static constexpr int inset = 2;

    TextField(Published<std::string>& text, const QString& placeholder, QWidget* parent = nullptr);

    void setColorScheme(ColorScheme scheme);

Q_SIGNALS:
    void focusChanged();

protected:
    void paintEvent(QPaintEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void copySelection();
    void pasteText();
    void restartBlinking();

    Published<std::string>& bound_;
    Subscription textObserver_;
    Subscription blinking_;
    ColorScheme scheme_ = ColorScheme::dark;
    bool isCaretShown_ = false;
    bool isComposing_ = false;
};

}  // namespace brindle
