#pragma once

#include <QPointer>
#include <QWindow>
#include <array>
#include <memory>

#include "platform/qt/WindowSystem.h"
#include "platform/x11/X11Connection.h"

namespace brindle {

/// What the toolkit's windows need of X11: the compositor and the tray, which own selections of their screen, and the
/// keyboard. The toolkit must run on X11 too.
class X11WindowSystem final : public WindowSystem {
public:
    /// On a connection that nobody else takes property or selection notices from.
    explicit X11WindowSystem(std::unique_ptr<X11Connection> connection);

    [[nodiscard]] bool isComposited() const override { return compositor_.hasOwner; }
    [[nodiscard]] Subscription onCompositingChange(std::function<void()> observer) override;
    [[nodiscard]] bool hasEmbeddingTray() const override { return tray_.hasOwner; }
    [[nodiscard]] Subscription onEmbeddingTrayChange(std::function<void()> observer) override;
    [[nodiscard]] std::optional<ColorScheme> panelScheme() const override;
    void takeFocus(QWindow& window) override;
    [[nodiscard]] bool hasFocus() const override;
    void keepOffTaskbar(QWindow& window) override;
    void setContentRectangle(QWindow& window, QRect content, QMargins shadow) override;
    [[nodiscard]] bool isMouseButtonDown() const override;

private:
    struct Selection {
        xcb_atom_t name = XCB_ATOM_NONE;
        bool hasOwner = false;
        Signal<> changes;
    };

    [[nodiscard]] bool hasOwner(const Selection& selection) const;
    void watch(Selection& selection, std::string_view name);
    void refresh(Selection& selection);
    void giveFocus(xcb_timestamp_t time);

    std::unique_ptr<X11Connection> connection_;
    Selection compositor_;
    Selection tray_;
    xcb_window_t clock_;
    // Made beforehand: a round trip while the window manager holds the server would cost the opening tens of ms.
    xcb_atom_t userTime_;
    xcb_atom_t activeWindow_;
    xcb_atom_t windowState_;
    xcb_atom_t frameExtents_;
    std::array<xcb_atom_t, 2> offTaskbar_;
    QPointer<QWindow> wantsFocus_;
    Subscription selectionNotices_;
    Subscription propertyNotices_;
};

}  // namespace brindle
