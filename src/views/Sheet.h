#pragma once

#include <QPointer>
#include <functional>

#include "base/Published.h"
#include "platform/ColorSchemes.h"
#include "platform/qt/FramelessWindow.h"

namespace brindle {

class SheetView;

/// A view in a window of its own over the popover, while a flag says so. Closing it clears the flag; it also goes away
/// with the popover, and comes back with it.
class Sheet {
public:
    using MakeView = std::function<SheetView*(std::function<void()> dismiss)>;

    Sheet(Published<bool>& isPresented, MakeView makeView, QWidget& popover);
    Sheet(const Sheet&) = delete;
    Sheet& operator=(const Sheet&) = delete;
    ~Sheet();

    /// Opens and closes it as the flag is by now.
    void refresh(ColorScheme scheme);

private:
    void open(ColorScheme scheme);
    void close();

    Published<bool>& isPresented_;
    MakeView makeView_;
    QWidget& popover_;
    QPointer<FramelessWindow> window_;
    QPointer<SheetView> view_;
};

}  // namespace brindle
