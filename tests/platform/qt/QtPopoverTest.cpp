#include "platform/qt/QtPopover.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>

#include "platform/Await.h"
#include "platform/qt/QtApplication.h"
#include "platform/qt/WindowShadow.h"

namespace brindle {
namespace {

/// A window system whose compositor the test starts and ends.
class TestWindowSystem : public WindowSystem {
public:
    [[nodiscard]] bool isComposited() const override { return isComposited_; }
    [[nodiscard]] Subscription onCompositingChange(std::function<void()> observer) override {
        return changes_.subscribe(std::move(observer));
    }
    [[nodiscard]] bool isMouseButtonDown() const override {
        ++timesAsked;
        return isButtonDown;
    }
    void setComposited(bool isComposited) {
        isComposited_ = isComposited;
        changes_.emit();
    }

    bool isButtonDown = false;
    mutable int timesAsked = 0;

private:
    bool isComposited_ = true;
    Signal<> changes_;
};

class TestContent : public QtPopoverContent {
public:
    TestContent() {
        widget_.setAutoFillBackground(true);
        widget_.setPalette(Qt::red);
        field_.setGeometry(16, 16, 200, 32);
    }
    [[nodiscard]] QWidget& widget() override { return widget_; }
    [[nodiscard]] ColorScheme colorScheme() const override { return ColorScheme::dark; }
    [[nodiscard]] Subscription onColorSchemeChange(std::function<void()> /*observer*/) override { return {}; }

private:
    QWidget widget_;
    QLineEdit field_{&widget_};
};

void press(QWidget& widget, Qt::Key key) {
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

class QtPopoverTest : public testing::Test {
protected:
    void SetUp() override {
        popover_.setContentSize({350, 500});
        popover_.setBehavior(PopoverBehavior::transient);
        auto content = std::make_unique<TestContent>();
        widget_ = &content->widget();
        EXPECT_FALSE(popover_.windowFrame());
        popover_.setContent(std::move(content));
    }

    void show() {
        popover_.show({{400, 0}, {22, 22}}, RectEdge::minY);
        popover_.makeKeyWindow();
        ASSERT_TRUE(await([] { return QGuiApplication::focusWindow() != nullptr; }));
    }
    [[nodiscard]] QImage picture() const { return widget_->window()->grab().toImage(); }

    TestWindowSystem windowSystem_;
    QtPopover popover_{windowSystem_};
    QWidget* widget_ = nullptr;
};

TEST_F(QtPopoverTest, KeepsItsContentInPlaceWhenTheCompositorComesAndGoes) {
    show();
    const auto frame = popover_.windowFrame();
    const QPoint place = widget_->mapToGlobal(QPoint());
    ASSERT_TRUE(frame);
    EXPECT_EQ(*frame, (Rect{{236, 28}, {350, 500}}));
    EXPECT_EQ(widget_->window()->size(), QSize(414, 564));
    EXPECT_TRUE(widget_->window()->mask().isEmpty());

    windowSystem_.setComposited(false);
    EXPECT_EQ(popover_.windowFrame(), frame);
    EXPECT_EQ(widget_->mapToGlobal(QPoint()), place);
    EXPECT_EQ(widget_->window()->size(), QSize(350, 500));
    const QRegion mask = widget_->window()->mask();
    EXPECT_EQ(mask.boundingRect(), QRect(0, 0, 350, 500));
    EXPECT_FALSE(mask.contains(QPoint(2, 2)));
    EXPECT_TRUE(mask.contains(QPoint(4, 4)));

    EXPECT_EQ(picture().pixelColor(100, 0), QColor(0x3B4A60));

    windowSystem_.setComposited(true);
    EXPECT_EQ(widget_->mapToGlobal(QPoint()), place);
    EXPECT_TRUE(widget_->window()->mask().isEmpty());
}

TEST_F(QtPopoverTest, PaintsShadowHairlineAndCornersOverTheContent) {
    show();
    const QImage shadowed = picture();
    constexpr QPoint corner(WindowShadow::margins.left(), WindowShadow::margins.top());
    EXPECT_EQ(shadowed.pixelColor(corner + QPoint(100, 100)), QColor(Qt::red));
    EXPECT_EQ(shadowed.pixelColor(corner + QPoint(100, 0)), QColor(0x3B4A60));
    EXPECT_EQ(shadowed.pixelColor(corner + QPoint(0, 250)), QColor(0x3B4A60));
    const QColor cut = shadowed.pixelColor(corner);
    EXPECT_GT(cut.alpha(), 0) << "shadow where the corner is cut off";
    EXPECT_LT(cut.alpha(), 200);
    EXPECT_EQ(shadowed.pixelColor(0, 0).alpha(), 0) << "the shadow fades out before the window ends";
    const int below = corner.y() + 500 + 4;
    EXPECT_GT(shadowed.pixelColor(200, below).alpha(), shadowed.pixelColor(200, below + 20).alpha());
}

TEST_F(QtPopoverTest, StaysForAMenuAndAHeldButtonAndClosesWhenTheFocusIsElsewhere) {
    show();
    // The toolkit's word that no window of the program has the focus; this desktop never takes it away.
    const auto loseFocus = [this] {
        windowSystem_.timesAsked = 0;
        Q_EMIT qGuiApp->focusWindowChanged(nullptr);
    };
    const auto isAskedTwice = [this] { return windowSystem_.timesAsked >= 2; };
    QMenu menu(widget_);
    menu.addAction(QStringLiteral("Copy"));
    menu.popup(QPoint(300, 300));
    ASSERT_TRUE(await([&] { return QGuiApplication::focusWindow() == menu.windowHandle(); }));
    loseFocus();
    ASSERT_TRUE(await(isAskedTwice));
    EXPECT_TRUE(popover_.isShown()) << "its menu is open";

    windowSystem_.isButtonDown = true;
    menu.close();
    widget_->activateWindow();
    ASSERT_TRUE(await([this] { return QGuiApplication::focusWindow() == widget_->window()->windowHandle(); }));
    loseFocus();
    ASSERT_TRUE(await(isAskedTwice));
    EXPECT_TRUE(popover_.isShown()) << "the button may be held over the tray";

    windowSystem_.isButtonDown = false;
    QElapsedTimer sinceRelease;
    sinceRelease.start();
    EXPECT_TRUE(await([this] { return !popover_.isShown(); }));
    EXPECT_GE(sinceRelease.elapsed(), 100) << "the click may come a while after the release";
}

TEST_F(QtPopoverTest, LeavesInputToItsSheet) {
    show();
    FramelessWindow earlier(*widget_);
    FramelessWindow sheet(*widget_);
    for (FramelessWindow* each : {&earlier, &sheet}) {
        each->setContentSize({100, 100});
        each->presentSheet();
    }
    earlier.close();
    QWidget& window = *widget_->window();
    QWidget* field = widget_->findChild<QLineEdit*>();
    const QPoint onField = field->mapTo(&window, QPoint(5, 5));
    EXPECT_NE(window.childAt(onField), field);
    window.activateWindow();
    EXPECT_TRUE(await([&] { return QGuiApplication::focusWindow() == sheet.windowHandle(); }));
    press(*field, Qt::Key_Escape);
    EXPECT_FALSE(sheet.isVisible());
    EXPECT_TRUE(popover_.isShown());
    EXPECT_EQ(window.childAt(onField), field);
}

TEST_F(QtPopoverTest, HasSheetsInItsMiddleThatCloseOnEscapeAndGoWithIt) {
    QtApplication application;
    FramelessWindow* sheet = nullptr;
    for (const auto& close : std::vector<std::function<void()>>{
             [&] { press(*sheet, Qt::Key_Escape); }, [&] { popover_.performClose(); }, [&] { application.hide(); }}) {
        const bool isByEscape = sheet == nullptr;
        show();
        FramelessWindow next(*widget_);
        sheet = &next;
        sheet->setContentSize({100, 100});
        sheet->presentSheet();
        EXPECT_EQ(sheet->contentFrame(), QRect(361, 228, 100, 100));
        close();
        EXPECT_FALSE(sheet->isVisible());
        EXPECT_EQ(popover_.isShown(), isByEscape);
    }
}

}  // namespace
}  // namespace brindle
