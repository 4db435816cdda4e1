#pragma once

#include <memory>
#include <optional>

#include "platform/Geometry.h"

namespace brindle {

/// What a popover shows; each backend knows its own kind.
class PopoverContent {
public:
    virtual ~PopoverContent() = default;
};

enum class PopoverBehavior { transient = 1 };
enum class RectEdge { minY = 1 };  ///< the popover hangs below its anchor

/// A small window beside the thing it belongs to, reused for every opening. Main thread.
class Popover {
public:
    virtual ~Popover() = default;

    virtual void setContentSize(Size points) = 0;
    /// Transient: it closes by itself when the focus goes to another program or when Escape is not wanted by its
    /// content; not for a menu, dialog or sheet of its own. A click on the status item does not close it this way: the
    /// item's action still finds it shown.
    virtual void setBehavior(PopoverBehavior behavior) = 0;
    virtual void setAnimates(bool animates) = 0;
    virtual void setContent(std::unique_ptr<PopoverContent> content) = 0;

    [[nodiscard]] virtual bool isShown() const = 0;
    /// Shows it next to the rectangle, wholly on that screen.
    virtual void show(Rect anchor, RectEdge preferredEdge) = 0;
    virtual void performClose() = 0;

    /// The frame of the window that holds the content, without any shadow; none without a content.
    [[nodiscard]] virtual std::optional<Rect> windowFrame() const = 0;
    /// Gives that window the keyboard focus.
    virtual void makeKeyWindow() = 0;
};

class Popovers {
public:
    virtual ~Popovers() = default;
    [[nodiscard]] virtual std::unique_ptr<Popover> createPopover() = 0;
};

}  // namespace brindle
