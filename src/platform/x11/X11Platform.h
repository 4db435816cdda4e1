#pragma once

#include <memory>
#include <optional>

#include "platform/Platform.h"
#include "platform/freedesktop/BusSingleInstance.h"
#include "platform/freedesktop/DesktopEntryIndex.h"
#include "platform/freedesktop/FreedesktopBundle.h"
#include "platform/freedesktop/FreedesktopLoginItem.h"
#include "platform/freedesktop/FreedesktopSystemInformation.h"
#include "platform/freedesktop/PortalColorSchemes.h"
#include "platform/freedesktop/SqliteDefaultsStore.h"
#include "platform/qt/QtApplication.h"
#include "platform/qt/QtMainQueue.h"
#include "platform/qt/QtPopover.h"
#include "platform/qt/QtStatusBar.h"
#include "platform/x11/X11AccessibilityTrust.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11EventTaps.h"
#include "platform/x11/X11HotKeys.h"
#include "platform/x11/X11KeyEvents.h"
#include "platform/x11/X11Keyboard.h"
#include "platform/x11/X11MouseMonitor.h"
#include "platform/x11/X11Pasteboard.h"
#include "platform/x11/X11WindowSystem.h"
#include "platform/x11/X11Workspace.h"

namespace brindle {

/// A free desktop on an X server. Needs a QApplication on the same display, which outlives it.
class X11Platform final : public Platform {
public:
    /// Null when the server cannot be reached.
    static std::unique_ptr<X11Platform> create();
    /// Leaves the text that it serves to the desktop's clipboard manager.
    ~X11Platform() override;

    AccessibilityTrust& accessibilityTrust() override { return accessibilityTrust_; }
    Application& application() override { return application_; }
    Bundle& bundle() override { return bundle_; }
    ColorSchemes& colorSchemes() override { return colorSchemes_; }
    /// Opened at the first use: the one instance of the session comes first.
    DefaultsStore& defaults() override;
    EventTaps& eventTaps() override { return eventTaps_; }
    HotKeys& hotKeys() override { return hotKeys_; }
    KeyEvents& keyEvents() override { return keyEvents_; }
    LoginItem& loginItem() override { return loginItem_; }
    MainQueue& mainQueue() override { return mainQueue_; }
    MouseMonitor& mouseMonitor() override { return mouseMonitor_; }
    Pasteboard& pasteboard() override { return pasteboard_; }
    Popovers& popovers() override { return popovers_; }
    SingleInstance& singleInstance() override { return singleInstance_; }
    StatusBar& statusBar() override { return statusBar_; }
    SystemInformation& systemInformation() override { return systemInformation_; }
    Workspace& workspace() override { return workspace_; }

private:
    /// A connection each for what must not hold up the others: a text of megabytes, a focus that is waited for.
    struct Connections {
        std::unique_ptr<X11Connection> desktop;
        std::unique_ptr<X11Connection> clipboard;
        std::unique_ptr<X11Connection> windows;
    };
    explicit X11Platform(Connections connections);
    [[nodiscard]] PrimaryLoan primaryLoan();

    std::unique_ptr<X11Connection> desktop_;
    std::unique_ptr<X11Connection> clipboard_;

    QtMainQueue mainQueue_;
    QtApplication application_;
    FreedesktopBundle bundle_;
    FreedesktopSystemInformation systemInformation_;
    FreedesktopLoginItem loginItem_;
    BusSingleInstance singleInstance_;
    PortalColorSchemes colorSchemes_;
    Subscription paletteChanges_;
    std::optional<SqliteDefaultsStore> defaults_;
    DesktopEntryIndex desktopEntries_;

    X11Workspace workspace_;
    X11Pasteboard pasteboard_;
    X11Keyboard keyboard_;
    X11KeyEvents keyEvents_;
    X11EventTaps eventTaps_;
    X11HotKeys hotKeys_;
    X11AccessibilityTrust accessibilityTrust_;

    X11WindowSystem windowSystem_;
    QtPopovers popovers_;
    QtStatusBar statusBar_;
    X11MouseMonitor mouseMonitor_;
    Subscription statusClicks_;
};

}  // namespace brindle
