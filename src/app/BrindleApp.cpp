#include "app/BrindleApp.h"

#include <QApplication>
#include <csignal>
#include <cstdlib>
#include <memory>

#include "app/AppDelegate.h"
#include "base/Log.h"
#include "platform/Platform.h"
#include "platform/SingleInstance.h"
#include "platform/x11/X11Platform.h"
#include "views/ContentPopover.h"

namespace brindle {

namespace {

constexpr const char* toolkitPlatform = "QT_QPA_PLATFORM";

void prepareToolkit() {
    // Clipboard, tray, grabs and window placement are X11's (Xwayland's in a Wayland session).
    qputenv(toolkitPlatform, "xcb");
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    QCoreApplication::setApplicationName("brindle");
    QGuiApplication::setApplicationDisplayName("Brindle");
    QGuiApplication::setDesktopFileName("org.brindle.Brindle");
    QGuiApplication::setQuitOnLastWindowClosed(false);
}

std::unique_ptr<PopoverContent> makeContent(HistoryManager& history, ClipboardMonitor& monitor,
                                            SettingsManager& settings) {
    return std::make_unique<ContentPopover>(history, monitor, settings);
}

}  // namespace

int BrindleApp::run(int argc, char** argv) {
    // A closed standard output costs log lines, not the program.
    std::signal(SIGPIPE, SIG_IGN);
    if (qEnvironmentVariableIsEmpty("DISPLAY")) {
        log("Brindle needs an X server: DISPLAY is not set.");
        return EXIT_FAILURE;
    }
    prepareToolkit();
    const QApplication application(argc, argv);
    qunsetenv(toolkitPlatform);  // not for the programs that we start

    const auto desktop = X11Platform::create();
    if (!desktop) {
        log("Brindle cannot connect to the X server.");
        return EXIT_FAILURE;
    }
    setPlatform(desktop.get());

    auto& instance = desktop->singleInstance();
    if (instance.claim() != InstanceClaim::first)
        return EXIT_SUCCESS;

    const auto delegate = std::make_shared<AppDelegate>(makeContent);
    desktop->application().setDelegate(delegate.get());
    delegate->applicationDidFinishLaunching();
    const auto secondStart = instance.onSecondStart([&delegate] { delegate->togglePopover(); });
    const int exitCode = QApplication::exec();
    desktop->application().setDelegate(nullptr);
    return exitCode;
}

}  // namespace brindle
