#pragma once

#include <QAbstractButton>

#include "platform/ColorSchemes.h"
#include "views/FocusRing.h"

namespace brindle {

/// The base of everything that is pressed: flat, known to assistive technology by its name, in the Tab order but not
/// focused by a click. Space and Return press it. A subclass paints itself from `look`.
class Control : public QAbstractButton {
    Q_OBJECT
public:
    explicit Control(const QString& name, QWidget* parent = nullptr);

    void setColorScheme(ColorScheme scheme);
    [[nodiscard]] ColorScheme colorScheme() const { return scheme_; }

    /// Drawn as pressed while a menu of its own is open.
    void setMenuOpen(bool isOpen);

    /// Whether the keyboard is here and led here.
    [[nodiscard]] bool showsFocusRing() const { return hasFocus() && ring_.isShown(); }

protected:
    enum class Look { rest, hover, pressed };
    [[nodiscard]] Look look() const;

    virtual void paint(QPainter& painter) = 0;

    void paintEvent(QPaintEvent* event) final;
    void focusInEvent(QFocusEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    ColorScheme scheme_ = ColorScheme::dark;
    FocusRing ring_;
    bool isMenuOpen_ = false;
};

}  // namespace brindle
