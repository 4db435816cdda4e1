#pragma once

#include "platform/Application.h"
#include "platform/Platform.h"
#include "platform/RunningApplication.h"

namespace brindle {

/// What the services and views need of the application delegate: the remembered applications and the popover. It is
/// the only way up; it does not grow.
class FocusDelegate : public ApplicationDelegate {
public:
    [[nodiscard]] virtual const RunningApplicationHandle& previousApp() const = 0;
    virtual void setPreviousApp(RunningApplicationHandle app) = 0;
    [[nodiscard]] virtual const RunningApplicationHandle& lastAppFocus() const = 0;
    virtual void setLastAppFocus(RunningApplicationHandle app) = 0;

    [[nodiscard]] virtual bool isPopoverShown() const = 0;
    virtual void performClosePopover() = 0;
    /// Closes the popover when it is shown, then removes the outside-click monitor.
    virtual void closePopover() = 0;
    virtual void removeGlobalMouseUpMonitor() = 0;
    virtual void activatePreviousApp() = 0;

protected:
    ~FocusDelegate() override = default;
};

/// The application's delegate in that role; null when there is none or it is another kind: the caller then skips the
/// step that needs it.
inline FocusDelegate* focusDelegate() {
    return dynamic_cast<FocusDelegate*>(platform().application().delegate());
}

}  // namespace brindle
