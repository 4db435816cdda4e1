#pragma once

#include <QMargins>
#include <QRect>
#include <functional>
#include <optional>

#include "base/Signal.h"
#include "platform/ColorSchemes.h"

class QWindow;

namespace brindle {

/// What the toolkit does not tell of the window system it runs on. This one knows of nothing: the desktop of a program
/// without a display. Main thread; outlives the windows.
class WindowSystem {
public:
    WindowSystem() = default;
    WindowSystem(const WindowSystem&) = delete;
    WindowSystem& operator=(const WindowSystem&) = delete;
    virtual ~WindowSystem() = default;

    /// Whether translucent windows are blended with what is below them.
    [[nodiscard]] virtual bool isComposited() const { return true; }
    // NOLINTNEXTLINE(performance-unnecessary-value-param): where the notice exists, it is kept
    [[nodiscard]] virtual Subscription onCompositingChange(std::function<void()> /*observer*/) { return {}; }

    /// Whether there is a tray that embeds windows (XEmbed).
    [[nodiscard]] virtual bool hasEmbeddingTray() const { return false; }
    // NOLINTNEXTLINE(performance-unnecessary-value-param): where the notice exists, it is kept
    [[nodiscard]] virtual Subscription onEmbeddingTrayChange(std::function<void()> /*observer*/) { return {}; }

    /// What the desktop's panel looks like, in which a host draws our icon; none where that cannot be seen.
    [[nodiscard]] virtual std::optional<ColorScheme> panelScheme() const { return std::nullopt; }

    /// Gives a shown window the keyboard as if the user had asked for it, also when the toolkit saw no event of the
    /// user that led to it.
    virtual void takeFocus(QWindow& /*window*/) {}
    /// Whether a window of this program has the keyboard, or will have it again when the one who grabs it lets go: the
    /// toolkit takes the menu of another program for a loss of the focus.
    [[nodiscard]] virtual bool hasFocus() const { return false; }
    /// For a hidden window: its next showing gives it no entry in taskbars and pagers.
    virtual void keepOffTaskbar(QWindow& /*window*/) {}
    /// What of the window is more than its shadow (points, relative to the window): clicks beside it go through to what
    /// is below, and window managers place and keep on the screen this part alone.
    virtual void setContentRectangle(QWindow& /*window*/, QRect /*content*/, QMargins /*shadow*/) {}
    /// Whether a mouse button is held, over whatever window.
    [[nodiscard]] virtual bool isMouseButtonDown() const { return false; }
};

}  // namespace brindle
