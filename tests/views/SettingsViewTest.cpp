#include "views/SettingsView.h"

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
    settings.setAppTheme(AppTheme::light);
    settings.setMaxClipboardItems(26);
    settle();
    EXPECT_EQ(chosen(), QStringList("Light")) << "set elsewhere, the size one that has no segment";
}

TEST_F(SettingsViewTest, IsWorkedByKeyboardWhichTheListBelowDoesNotGet) {
    list().setFocus(Qt::TabFocusReason);
    show(true);
    EXPECT_FALSE(list().hasFocus());
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
    control("Start at Login").setFocus(Qt::TabFocusReason);
    press(Qt::Key_Space);
    EXPECT_TRUE(settings.launchAtLogin().value());
    press(Qt::Key_Escape);
    EXPECT_FALSE(state().showSettings.value());
    EXPECT_TRUE(list().hasFocus());
    EXPECT_EQ(list().focusPolicy(), Qt::TabFocus);
}

TEST_F(SettingsViewTest, LiesOverTheContentAreaAndClosesByTheLayerNotByThePanel) {
    EXPECT_FALSE(overlay().isVisible());
    show(true);
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

}  // namespace

}  // namespace brindle::test
