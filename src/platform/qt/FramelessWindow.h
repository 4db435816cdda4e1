#pragma once

#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <optional>

#include "platform/ColorSchemes.h"
#include "platform/qt/WindowSystem.h"

namespace brindle {

/// A small window of our own look: no frame, rounded corners, a hairline over everything and, where the desktop blends
/// windows, a shadow. It stays on top, has no entry in the taskbar, and Escape that its content does not accept closes
/// it. It is made for the popover and for sheets: windows of a fixed size that belong to another one. Its frame is that
/// of the content; the room for the shadow around it is its own affair.
class FramelessWindow : public QWidget {
    Q_OBJECT

public:
    static constexpr int cornerRadius = 12;  ///< points

    explicit FramelessWindow(WindowSystem& windowSystem);
    /// A sheet of the window that the widget is in: it stays above that one, which takes no input meanwhile, and closes
    /// with it.
    explicit FramelessWindow(QWidget& owner);

    /// The content fills the frame and must paint its whole background. Like any child it is deleted with this window,
    /// unless it goes first.
    void setContent(QWidget& content);
    void setContentSize(QSize points);
    void setColorScheme(ColorScheme scheme);
    [[nodiscard]] ColorScheme colorScheme() const { return scheme_; }

    [[nodiscard]] QRect contentFrame() const;  ///< on the desktop, in points
    void moveContentTo(QPoint topLeft);

    /// Centres it on its owner's frame, wholly on that screen, shows it and gives it the keyboard.
    void presentSheet();
    /// Above the other windows, with the keyboard.
    void takeFocus();

    /// Whether the corners can be round and things can be translucent here.
    [[nodiscard]] bool isComposited() const { return isComposited_; }
    [[nodiscard]] WindowSystem& windowSystem() const { return *windowSystem_; }

    /// The window of this kind that the widget is in, be it through sheets; null when it is in none.
    static FramelessWindow* of(const QWidget* widget);

Q_SIGNALS:
    void closed();  ///< it went off the screen, whatever the reason

protected:
    bool event(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    class Edge;
    class Veil;

    FramelessWindow(WindowSystem& windowSystem, QWidget* owner);
    [[nodiscard]] QMargins shadowMargins() const;
    [[nodiscard]] QRect contentRect() const;  ///< relative to this window
    [[nodiscard]] QSize windowSize() const;   ///< that it should have
    void followCompositing();
    void keepOnScreen();
    void settle();
    void setSheet(FramelessWindow* sheet);  ///< the one that is presented over this window, if any
    void layOut(QPoint contentTopLeft);

    WindowSystem* windowSystem_;
    bool isComposited_;
    ColorScheme scheme_ = ColorScheme::dark;
    QSize contentSize_;
    QPointer<QWidget> content_;
    QPointer<FramelessWindow> sheet_;
    Veil* veil_;
    Edge* edge_;
    QTimer settling_;
    std::optional<QPoint> placed_;  ///< where it was sent a moment ago
    bool hasChangedScreen_ = false;
    Subscription compositing_;
};

}  // namespace brindle
