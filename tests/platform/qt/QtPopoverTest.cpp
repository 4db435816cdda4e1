#include "platform/qt/QtPopover.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QMenu>

#include "platform/Await.h"

namespace brindle {
namespace {

/// A window system that knows of a held button what the test says.
class TestWindowSystem : public WindowSystem {
public:
    [[nodiscard]] bool isComposited() const override { return true; }
    [[nodiscard]] Subscription onCompositingChange(std::function<void()> /*observer*/) override { return {}; }
    [[nodiscard]] bool isMouseButtonDown() const override {
        ++timesAsked;
        return isButtonDown;
    }

    bool isButtonDown = false;
    mutable int timesAsked = 0;
};

class TestContent : public QtPopoverContent {
public:
    [[nodiscard]] QWidget& widget() override { return widget_; }
    [[nodiscard]] ColorScheme colorScheme() const override { return ColorScheme::dark; }
    [[nodiscard]] Subscription onColorSchemeChange(std::function<void()> /*observer*/) override { return {}; }

private:
    QWidget widget_;
};

TEST(QtPopoverTest, StaysForAMenuAndAHeldButtonAndClosesWhenTheFocusIsElsewhere) {
    TestWindowSystem windowSystem;
    QtPopover popover(windowSystem);
    popover.setContentSize({350, 500});
    popover.setBehavior(PopoverBehavior::transient);
    auto content = std::make_unique<TestContent>();
    QWidget* const widget = &content->widget();
    popover.setContent(std::move(content));
    popover.show({{400, 0}, {22, 22}}, RectEdge::minY);
    popover.makeKeyWindow();
    ASSERT_TRUE(await([] { return QGuiApplication::focusWindow() != nullptr; }));
    // The toolkit's word that no window of the program has the focus; this desktop never takes it away.
    const auto loseFocus = [&] {
        windowSystem.timesAsked = 0;
        Q_EMIT qGuiApp->focusWindowChanged(nullptr);
    };
    const auto isAskedTwice = [&] { return windowSystem.timesAsked >= 2; };
    QMenu menu(widget);
    menu.addAction(QStringLiteral("Copy"));
    menu.popup(QPoint(300, 300));
    ASSERT_TRUE(await([&] { return QGuiApplication::focusWindow() == menu.windowHandle(); }));
    loseFocus();
    ASSERT_TRUE(await(isAskedTwice));
    EXPECT_TRUE(popover.isShown()) << "its menu is open";

    windowSystem.isButtonDown = true;
    menu.close();
    widget->activateWindow();
    ASSERT_TRUE(await([&] { return QGuiApplication::focusWindow() == widget->window()->windowHandle(); }));
    loseFocus();
    ASSERT_TRUE(await(isAskedTwice));
    EXPECT_TRUE(popover.isShown()) << "the button may be held over the tray";

    windowSystem.isButtonDown = false;
    QElapsedTimer sinceRelease;
    sinceRelease.start();
    EXPECT_TRUE(await([&] { return !popover.isShown(); }));
    EXPECT_GE(sinceRelease.elapsed(), 100) << "the click may come a while after the release";
}

}  // namespace
}  // namespace brindle
