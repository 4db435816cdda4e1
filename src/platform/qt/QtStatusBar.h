#pragma once

#include <functional>

#include "base/Signal.h"
#include "platform/ColorSchemes.h"
#include "platform/StatusBar.h"
#include "platform/qt/QtApplication.h"
#include "platform/qt/WindowSystem.h"

namespace brindle {

/// What status items need of the rest of the backend. All of it outlives them.
struct StatusBarContext {
    QtApplication& application;
    WindowSystem& windowSystem;
    ColorSchemes& colorSchemes;
    Signal<> clicks;               ///< a click on an icon has come, before anything is done about it
    bool isIconElsewhere = false;  ///< a host in some window of another program draws the icon
};

/// The tray, through the toolkit.
class QtStatusBar final : public StatusBar {
public:
    QtStatusBar(QtApplication& application, WindowSystem& windowSystem, ColorSchemes& colorSchemes)
        : context_{application, windowSystem, colorSchemes, {}, false} {}

    [[nodiscard]] std::unique_ptr<StatusItem> createStatusItem(double length) override;

    /// Calls for each click on the icon before its action runs, so that the mouse monitor can be told to spare it.
    [[nodiscard]] Subscription onClick(std::function<void()> observer) {
        return context_.clicks.subscribe(std::move(observer));
    }

    /// Whether a click in any window of another program may turn out to be one on the icon.
    [[nodiscard]] bool isIconElsewhere() const { return context_.isIconElsewhere; }

private:
    StatusBarContext context_;
};

}  // namespace brindle
