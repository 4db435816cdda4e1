#include "app/BrindleApp.h"

#include <malloc.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <xcb/xcb.h>

#include <QApplication>
#include <QIcon>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <memory>

#include "app/AppDelegate.h"
#include "base/Log.h"
#include "platform/Platform.h"
#include "platform/SingleInstance.h"
#include "platform/freedesktop/FreedesktopBundle.h"
#include "platform/freedesktop/SessionBus.h"
#include "platform/x11/X11Platform.h"
#include "views/ContentPopover.h"

namespace brindle {

namespace {

/// The toolkit aborts where there is no server.
bool isServerReachable() {
    xcb_connection_t* probe = xcb_connect(nullptr, nullptr);
    const bool isReachable = xcb_connection_has_error(probe) == 0;
    xcb_disconnect(probe);
    return isReachable;
}

/// What people copy must neither land in a core dump nor be read out of this process by their other programs. Until
/// the process can be kept from both, a limit of one byte refuses the dump (core(5): to a file it is too small, and to
/// a collector it means none); the programs that we start inherit limits, so that it does not stay. Not at once: a
/// portal looks at /proc/PID/root of whoever asks it for the first time, and refuses those whose it cannot see.
void keepMemoryPrivate() {
    constexpr std::chrono::seconds portalMayTake{5};  // it may have to be started for our question
    rlimit before{};
    ::getrlimit(RLIMIT_CORE, &before);
    const rlimit none{std::min<rlim_t>(1, before.rlim_max), before.rlim_max};
    ::setrlimit(RLIMIT_CORE, &none);
    QTimer::singleShot(portalMayTake, [before] {
        ::prctl(PR_SET_DUMPABLE, 0, 0, 0, 0);
        ::setrlimit(RLIMIT_CORE, &before);
    });
}

/// Large texts and what is made of them go back to the system when they are freed. Left to itself, the allocator keeps
/// as much as the largest took; told to keep less than this, it asks for the same memory again at every copy.
void limitSpareMemory() {
    constexpr int spare = 4 << 20;  // bytes
    ::mallopt(M_MMAP_THRESHOLD, spare);
    ::mallopt(M_TRIM_THRESHOLD, spare);
}

/// What the start does not need, when the icon should be in the tray.
void finishStartLater() {
    constexpr std::chrono::milliseconds delay{500};
    QTimer::singleShot(delay, [] {
        // The windows' icon, which the look-up in the theme takes some time for.
        QApplication::setWindowIcon(QIcon::fromTheme(FreedesktopBundle::identifier));
        // What was needed once: the stored history in other forms above all.
        ::malloc_trim(0);
    });
}

bool isWaylandSession() {
    return !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

void logMissingServer() {
    if (isWaylandSession())
        log("Brindle needs X11, and this Wayland session has no Xwayland that answers.");
    else
        log("Brindle needs an X server, and none answers at DISPLAY=" + qgetenv("DISPLAY").toStdString());
}

void prepareToolkit() {
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    QCoreApplication::setApplicationName("brindle");
    QGuiApplication::setApplicationDisplayName("Brindle");
    QGuiApplication::setDesktopFileName(FreedesktopBundle::identifier);
    QGuiApplication::setQuitOnLastWindowClosed(false);
}

std::unique_ptr<PopoverContent> makeContent(HistoryManager& history, ClipboardMonitor& monitor,
                                            SettingsManager& settings) {
    return std::make_unique<ContentPopover>(history, monitor, settings);
}

/// A variable of the environment as long as this lives; not for the programs that we start.
class ScopedVariable {
public:
    ScopedVariable(const char* name, const char* value)
        : name_(name), wasSet_(qEnvironmentVariableIsSet(name)), former_(qgetenv(name)) {
        qputenv(name, value);
    }
    ~ScopedVariable() {
        if (wasSet_)
            qputenv(name_, former_);
        else
            qunsetenv(name_);
    }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;

private:
    const char* name_;
    bool wasSet_;
    QByteArray former_;
};

/// Clipboard, tray, grabs and window placement are X11's (Xwayland's in a Wayland session). The arguments are not the
/// toolkit's to read.
std::unique_ptr<QApplication> makeToolkit(char** argv) {
    const ScopedVariable platform("QT_QPA_PLATFORM", "xcb");
    const ScopedVariable loop("QT_NO_GLIB", "1");  // nothing here needs GLib's, which costs more at every wake-up
    static int count = 1;                          // the toolkit keeps a reference
    return std::make_unique<QApplication>(count, argv);
}

}  // namespace

int BrindleApp::run(char** argv) {
    // A closed standard output costs log lines, not the program.
    std::signal(SIGPIPE, SIG_IGN);
    limitSpareMemory();
    if (!isServerReachable()) {
        logMissingServer();
        return EXIT_FAILURE;
    }
    prepareToolkit();
    const auto application = makeToolkit(argv);
    neverStartSessionBus();
    keepMemoryPrivate();
    finishStartLater();
    const auto desktop = X11Platform::create();
    if (!desktop)
        return EXIT_FAILURE;  // the server went between the two looks at it
    setPlatform(desktop.get());

    auto& instance = desktop->singleInstance();
    const auto claim = instance.claim();
    if (claim == InstanceClaim::held)
        log("Brindle is running already and does not answer.");
    if (claim != InstanceClaim::first)
        return claim == InstanceClaim::handedOver ? EXIT_SUCCESS : EXIT_FAILURE;
    if (isWaylandSession())
        log("Wayland session: Brindle works with X11 applications (through Xwayland); what others copy may be missed.");

    const auto delegate = std::make_shared<AppDelegate>(makeContent);
    desktop->application().setDelegate(delegate.get());
    delegate->applicationDidFinishLaunching();
    const auto secondStart = instance.onSecondStart([&delegate] { delegate->togglePopoverAfterPaste(); });
    const int exitCode = QApplication::exec();
    desktop->application().setDelegate(nullptr);
    return exitCode;
}

}  // namespace brindle
