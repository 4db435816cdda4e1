#include "views/SettingsView.h"

#include <QAccessible>

#include "views/Animation.h"
#include "views/SettingsOverlay.h"
#include "views/ViewTest.h"

namespace brindle::test {

namespace {

using ::testing::ElementsAre;

class SettingsViewTest : public ViewTest {
protected:
    SettingsOverlay& overlay() { return *view.findChild<SettingsOverlay*>(); }
    SettingsView& panel() { return *view.findChild<SettingsView*>(); }
    QAbstractButton& control(const QString& name) { return named<QAbstractButton>(panel(), name); }
    QStringList chosen() {
        QStringList names;
        for (const auto* button : panel().findChildren<QAbstractButton*>()) {
            if (button->isChecked())
                names += button->accessibleName();
        }
        return names;
    }
    void click(const QString& name) {
        QTest::mouseClick(&control(name), Qt::LeftButton);
        sim.queue.run();
    }
    void show(bool isShown) {
        state().showSettings = isShown;
        settle();
    }
    void slide(bool isShown) {
        withAnimation([&] { state().showSettings = isShown; });
        settle();
    }
};

TEST_F(SettingsViewTest, WritesEachChoiceAtOnce) {
    show(true);
    EXPECT_EQ(chosen(), QStringList({"50", "Dark"}));
    click("100");
    EXPECT_THAT(sim.journal.take(), ElementsAre("store maxClipboardItems"));
    click("Start at Login");
    click("System");
    EXPECT_EQ(sim.store.integer("maxClipboardItems"), 100);
    EXPECT_TRUE(sim.store.boolean("launchAtLogin"));
    EXPECT_EQ(sim.store.string("appTheme"), "System");
    EXPECT_EQ(chosen(), QStringList({"100", "Start at Login", "System"}));
    click("Start at Login");
    EXPECT_FALSE(settings.launchAtLogin().value());
    fill(40);
    click("25");
    EXPECT_EQ(history.history().value().size(), 25U);
}

TEST_F(SettingsViewTest, ShowsWhatWasSetElsewhereAndNoSegmentForAStrangeSize) {
    show(true);
    for (const std::int64_t size : {0, 26, -1}) {
        settings.setMaxClipboardItems(size);
        settle();
        EXPECT_EQ(chosen(), QStringList("Dark")) << size;
    }
    control("25").setFocus(Qt::TabFocusReason);
    press(Qt::Key_Space);
    settings.setAppTheme(AppTheme::light);
    settle();
    EXPECT_EQ(chosen(), QStringList({"25", "Light"}));
}

TEST_F(SettingsViewTest, IsWorkedByKeyboardWhichTheListBelowDoesNotGet) {
    list().setFocus(Qt::TabFocusReason);
    show(true);
    EXPECT_FALSE(list().hasFocus());
    show(false);
    EXPECT_TRUE(list().hasFocus());
    show(true);
    control("Close").setFocus(Qt::TabFocusReason);
    EXPECT_EQ(tabStops(4), QStringList({"50", "Start at Login", "Dark", "Search..."}));
    control("Dark").setFocus(Qt::TabFocusReason);
    const std::pair<Qt::Key, AppTheme> steps[] = {{Qt::Key_Right, AppTheme::system},
                                                  {Qt::Key_Right, AppTheme::system},
                                                  {Qt::Key_Left, AppTheme::dark},
                                                  {Qt::Key_Left, AppTheme::light},
                                                  {Qt::Key_Left, AppTheme::light}};
    for (const auto& [key, theme] : steps) {
        press(key);
        EXPECT_EQ(settings.appTheme().value(), theme);
    }
    click("System");
    EXPECT_TRUE(control("System").hasFocus());
    control("Start at Login").setFocus(Qt::TabFocusReason);
    press(Qt::Key_Space);
    EXPECT_TRUE(settings.launchAtLogin().value());
    press(Qt::Key_Escape);
    EXPECT_FALSE(state().showSettings.value());
    EXPECT_TRUE(list().hasFocus());
    EXPECT_EQ(list().focusPolicy(), Qt::TabFocus);
    QWidget& menu = *view.findChild<SymbolButton*>();
    menu.setFocus(Qt::TabFocusReason);
    show(true);
    control("Close").setFocus(Qt::TabFocusReason);
    press(Qt::Key_Escape);
    EXPECT_TRUE(menu.hasFocus());
}

TEST_F(SettingsViewTest, LiesOverTheContentAreaAndClosesByTheLayerNotByThePanel) {
    EXPECT_FALSE(overlay().isVisible());
    show(true);
    EXPECT_EQ(overlay().geometry(), QRect(0, 101, 350, 370));
    EXPECT_EQ(panel().geometry(), QRect(20, 60, 310, 250));
    QTest::mouseClick(&panel(), Qt::LeftButton, {}, QPoint(150, 120));
    QTest::mousePress(&overlay(), Qt::LeftButton, {}, QPoint(5, 5));
    QTest::mouseRelease(&overlay(), Qt::LeftButton, {}, QPoint(150, 150));
    settle();
    EXPECT_TRUE(overlay().isVisible());
    QTest::mouseClick(&overlay(), Qt::LeftButton, {}, QPoint(5, 5));
    settle();
    EXPECT_FALSE(state().showSettings.value());
    EXPECT_FALSE(overlay().isVisible());
}

TEST_F(SettingsViewTest, SlidesOverTwoTenthsOfASecondAndTurnsAroundOnTheWay) {
    const QPoint beside(10, 460);
    const QColor before = pixel(view, beside);
    slide(true);
    EXPECT_GE(panel().y(), 370);
    sim.queue.advance(0.1);
    const int halfway = panel().y();
    EXPECT_TRUE(halfway > 60 && halfway < 370) << halfway;
    settings.setAppTheme(AppTheme::light);
    slide(false);
    EXPECT_NEAR(panel().y(), halfway, 40);
    EXPECT_EQ(pixel(panel(), {150, 8}), color(Role::surface, ColorScheme::light));
    settings.setAppTheme(AppTheme::dark);
    slide(true);
    sim.queue.advance(0.21);
    EXPECT_EQ(panel().y(), 60);
    EXPECT_LT(pixel(view, beside).lightness(), before.lightness());

    QTest::mouseClick(&control("Close"), Qt::LeftButton);
    sim.queue.advance(0.1);
    EXPECT_GT(panel().y(), 60);
    EXPECT_EQ(view.childAt(10, 110), list().viewport());
    sim.queue.advance(0.11);
    EXPECT_FALSE(overlay().isVisible());
    EXPECT_EQ(pixel(view, beside), before);
}

TEST_F(SettingsViewTest, TellsAssistiveTechnologyWhatIsOn) {
    settings.setLaunchAtLogin(true);
    show(true);
    for (const auto& [name, role] :
         {std::pair("Start at Login", QAccessible::CheckBox), {"50", QAccessible::RadioButton}}) {
        const auto* interface = QAccessible::queryAccessibleInterface(&control(name));
        EXPECT_EQ(interface->role(), role);
        EXPECT_TRUE(interface->state().checked);
    }
    const auto* segment = QAccessible::queryAccessibleInterface(&control("50"));
    EXPECT_EQ(segment->parent()->text(QAccessible::Name), "History Size");
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&panel())->text(QAccessible::Name), "Settings");
}

}  // namespace

}  // namespace brindle::test
