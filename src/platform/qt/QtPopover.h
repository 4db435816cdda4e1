#pragma once

#include <QElapsedTimer>
#include <QTimer>

#include "platform/Popover.h"
#include "platform/qt/FramelessWindow.h"
#include "platform/qt/QtPopoverContent.h"

namespace brindle {

/// A popover as a frameless window of its own, made once and mapped again for every opening. Not a popup of the
/// toolkit's: that would grab the keyboard, and with it the program's own hot keys. It never animates.
class QtPopover final : public Popover {
public:
    explicit QtPopover(WindowSystem& windowSystem);

    void setContentSize(Size points) override;
    void setBehavior(PopoverBehavior behavior) override;
    void setAnimates(bool /*animates*/) override {}
    /// Takes a `QtPopoverContent`; another kind counts as none.
    void setContent(std::unique_ptr<PopoverContent> content) override;

    [[nodiscard]] bool isShown() const override;
    void show(Rect anchor, RectEdge preferredEdge) override;
    void performClose() override;
    [[nodiscard]] std::optional<Rect> windowFrame() const override;
    void makeKeyWindow() override;

private:
    void prepare();  ///< the content is in the window afterwards, if there is one
    void followFocus(const QWindow* focused);
    void closeUnlessFocused();

    FramelessWindow window_;
    QTimer preparation_;       ///< runs from the content's coming until there is time for it
    QTimer focusLoss_;         ///< runs while no window of the program has the focus
    QElapsedTimer sinceHold_;  ///< since the focus went, or the last look that found something holding the popover
    bool isTransient_ = false;
    std::unique_ptr<QtPopoverContent> content_;
    Subscription colorScheme_;
};

class QtPopovers final : public Popovers {
public:
    explicit QtPopovers(WindowSystem& windowSystem) : windowSystem_(windowSystem) {}
    [[nodiscard]] std::unique_ptr<Popover> createPopover() override;

private:
    WindowSystem& windowSystem_;
};

}  // namespace brindle
