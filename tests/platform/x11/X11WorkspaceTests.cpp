#include "platform/x11/X11Workspace.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <QElapsedTimer>
#include <QFile>
#include <QRasterWindow>
#include <QTemporaryDir>

#include "platform/freedesktop/DesktopEntryIndex.h"
#include "platform/freedesktop/FreedesktopBundle.h"
#include "platform/x11/X11TestDesk.h"

namespace brindle::x11test {
namespace {

using testing::ElementsAre;
using testing::Optional;

class X11WorkspaceTest : public testing::Test {
protected:
    X11WorkspaceTest() {
        const QDir folder(data_.path());
        folder.mkdir("applications");
        QFile entry(folder.filePath("applications/org.example.Editor.desktop"));
        EXPECT_TRUE(entry.open(QFile::WriteOnly));
        entry.write("[Desktop Entry]\nType=Application\nName=Example Editor\nStartupWMClass=editor\n");
        qputenv("XDG_DATA_HOME", data_.path().toUtf8());
    }

    xcb_window_t front() {
        const auto application = std::dynamic_pointer_cast<X11RunningApplication>(workspace_->frontmostApplication());
        return application ? application->window() : xcb_window_t{XCB_WINDOW_NONE};
    }
    void start() {
        workspace_ = std::make_unique<X11Workspace>(*connection_, index_, bundle_);
        notices_ = workspace_->onDidActivateApplication([this](const RunningApplicationHandle& application) {
            EXPECT_EQ(application->processIdentifier(), workspace_->frontmostApplication()->processIdentifier());
            noticed_.push_back(std::dynamic_pointer_cast<X11RunningApplication>(application)->window());
        });
    }
    void bringUp(OtherWindow& window) {
        window.show();
        EXPECT_TRUE(await([&] { return front() == window.id(); }));
    }

    QTemporaryDir data_;
    FreedesktopBundle bundle_;
    DesktopEntryIndex index_;
    std::unique_ptr<X11Connection> connection_ = X11Connection::open();
    std::unique_ptr<X11Workspace> workspace_;
    Subscription notices_;
    std::vector<xcb_window_t> noticed_;
};

TEST_F(X11WorkspaceTest, TellsWhoIsInFront) {
    const WindowManager manager;
    start();
    OtherWindow editor({.windowClass = "Editor", .process = 4711});
    bringUp(editor);
    const auto application = workspace_->frontmostApplication();
    EXPECT_THAT(application->bundleIdentifier(), Optional(std::string("org.example.Editor")));
    EXPECT_THAT(application->localizedName(), Optional(std::string("Example Editor")));
    EXPECT_EQ(application->processIdentifier(), 4711);
    EXPECT_EQ(application->activationPolicy(), ActivationPolicy::regular);
    OtherWindow dialog({.windowClass = "prompt", .transientFor = editor.id()});
    bringUp(dialog);
    EXPECT_EQ(workspace_->frontmostApplication()->bundleIdentifier(), application->bundleIdentifier());

    QRasterWindow ours;
    ours.show();
    EXPECT_TRUE(await([&] { return front() == ours.winId(); }));
    EXPECT_EQ(workspace_->frontmostApplication()->bundleIdentifier(), bundle_.bundleIdentifier());
    EXPECT_EQ(workspace_->frontmostApplication()->processIdentifier(), getpid());
    EXPECT_THAT(noticed_, ElementsAre(editor.id(), dialog.id(), ours.winId()));
}

TEST_F(X11WorkspaceTest, TellsApplicationsFromTheFurnitureOfTheDesktop) {
    const auto skip = "_NET_WM_STATE_SKIP_TASKBAR";
    start();
    const auto regular = ActivationPolicy::regular;
    const auto accessory = ActivationPolicy::accessory;
    const std::pair<WindowSpec, ActivationPolicy> cases[] = {
        {{}, regular},
        {{.types = {"_NET_WM_WINDOW_TYPE_UTILITY"}}, regular},
        {{.types = {"_STRANGE_WINDOW_TYPE", "_NET_WM_WINDOW_TYPE_DOCK"}}, accessory},
        {{.types = {"_NET_WM_WINDOW_TYPE_DESKTOP"}}, accessory},
        {{.types = {"_NET_WM_WINDOW_TYPE_SPLASH"}}, accessory},
        {{.states = {skip}}, accessory},
        {{.types = {"_NET_WM_WINDOW_TYPE_DIALOG"}, .states = {skip}, .transientFor = 1}, regular},
        {{.isOverrideRedirect = true}, accessory},
    };
    for (const auto& [spec, policy] : cases) {
        OtherWindow window(spec);
        window.show();
        window.focus();  // without a window manager the focus decides
        ASSERT_EQ(front(), window.id());
        EXPECT_EQ(workspace_->frontmostApplication()->activationPolicy(), policy)
            << testing::PrintToString(spec.types) << testing::PrintToString(spec.states);
    }
}

TEST_F(X11WorkspaceTest, AnApplicationEndsWithItsWindow) {
    const WindowManager manager;
    start();
    auto window = std::make_unique<OtherWindow>(WindowSpec{.process = getpid() + 1});
    bringUp(*window);
    const auto application = workspace_->frontmostApplication();
    QElapsedTimer clock;
    clock.start();
    window->hide();
    EXPECT_TRUE(await([&] { return !workspace_->frontmostApplication(); }));
    EXPECT_GE(clock.elapsed(), Workspace::settlingTime * 1000) << "until then the last answer stands";
    EXPECT_FALSE(application->isTerminated());
    window.reset();  // as when the process is killed
    EXPECT_TRUE(await([&] { return application->isTerminated(); }));
    EXPECT_FALSE(application->activate());
}

TEST_F(X11WorkspaceTest, ActivatesTheVeryWindowAmongThreeOfOneApplication) {
    const WindowManager manager;
    start();
    std::vector<std::unique_ptr<OtherWindow>> windows;
    std::vector<RunningApplicationHandle> handles;
    for (int i = 0; i < 3; ++i) {
        windows.push_back(std::make_unique<OtherWindow>(WindowSpec{.windowClass = "editor", .process = 4711}));
        bringUp(*windows.back());
        handles.push_back(workspace_->frontmostApplication());
    }
    for (int round = 0; round < 6; ++round) {
        const auto wanted = static_cast<std::size_t>(round % 3);
        noticed_.clear();
        EXPECT_TRUE(handles[wanted]->activate());
        EXPECT_EQ(workspace_->frontmostApplication()->bundleIdentifier(), bundle_.bundleIdentifier());
        EXPECT_TRUE(await([&] {
            return workspace_->frontmostApplication()->bundleIdentifier() == handles[wanted]->bundleIdentifier();
        }));
        EXPECT_EQ(front(), windows[wanted]->id());
        EXPECT_TRUE(windows[wanted]->hasFocus());
        EXPECT_THAT(noticed_, ElementsAre(windows[wanted]->id()));
    }
}

TEST_F(X11WorkspaceTest, TheWindowThatGetsTheFocusOfAClosingPopoverIsNobodysChoice) {
    const WindowManager manager;
    start();
    OtherWindow wanted({.windowClass = "editor", .process = 4711});
    OtherWindow stranger({.windowClass = "stranger", .process = 4712});
    bringUp(wanted);
    const auto handle = workspace_->frontmostApplication();
    for (const bool isPaste : {true, false}) {
        QRasterWindow ours;
        ours.show();
        EXPECT_TRUE(await([&] { return front() == ours.winId(); }));
        noticed_.clear();
        ours.hide();
        stranger.show();
        EXPECT_TRUE(await([&] { return front() == stranger.id(); }));
        EXPECT_THAT(noticed_, testing::IsEmpty());
        if (isPaste) {
            EXPECT_TRUE(handle->activate());
        }
        EXPECT_TRUE(await([&] { return !noticed_.empty(); }));
        EXPECT_THAT(noticed_, ElementsAre(isPaste ? wanted.id() : stranger.id()));
        stranger.hide();
        EXPECT_TRUE(await([&] { return front() == wanted.id(); }));
    }
}

TEST_F(X11WorkspaceTest, AWindowThatIsNotTheWantedOneShowsOnlyWhenTheActivationHasFailed) {
    const WindowManager manager;
    start();
    OtherWindow wanted({.windowClass = "editor", .process = 4711});
    OtherWindow sibling({.windowClass = "editor", .process = 4711});
    OtherWindow stranger({.windowClass = "stranger", .process = 4712});
    bringUp(wanted);
    const auto handle = workspace_->frontmostApplication();
    bringUp(stranger);
    noticed_.clear();
    // A window manager that brings the wrong window up.
    xcb_unmap_window(wanted.connection().get(), wanted.id());
    keysDown(wanted.connection());
    QElapsedTimer clock;
    clock.start();
    EXPECT_TRUE(handle->activate());
    EXPECT_EQ(front(), stranger.id());
    sibling.show();
    EXPECT_TRUE(await([&] { return sibling.hasFocus(); }));
    EXPECT_TRUE(await([&] { return front() == XCB_WINDOW_NONE; }));
    EXPECT_EQ(workspace_->frontmostApplication()->processIdentifier(), getpid());
    EXPECT_THAT(noticed_, testing::IsEmpty());
    EXPECT_TRUE(await([&] { return front() == sibling.id(); }));
    EXPECT_GE(clock.elapsed(), X11Workspace::activationTime * 1000);
    EXPECT_THAT(noticed_, ElementsAre(sibling.id()));
}

TEST_F(X11WorkspaceTest, DoesWithoutAWindowManagerAndNoticesOne) {
    start();
    OtherWindow first({.windowClass = "editor"});
    OtherWindow second;
    first.show();
    second.show();
    first.focus();
    EXPECT_TRUE(await([&] { return !noticed_.empty(); }));
    const auto handle = workspace_->frontmostApplication();
    second.focus();
    EXPECT_TRUE(await([&] { return noticed_.size() == 2; }));
    EXPECT_THAT(noticed_, ElementsAre(first.id(), second.id()));
    EXPECT_TRUE(handle->activate());
    EXPECT_EQ(front(), first.id());
    const WindowManager manager;
    OtherWindow third;
    bringUp(third);
}

TEST_F(X11WorkspaceTest, OpensOnlyAddresses) {
    start();
    for (const char* address : {"", "no scheme", "mailto:a b", "http://[", "-flag", "/path", "http://ex%ample/"})
        EXPECT_FALSE(workspace_->openUrl(address)) << address;
}

}  // namespace
}  // namespace brindle::x11test
