#include "views/SettingsView.h"

#include <QAccessible>

#include "views/Animation.h"
#include "views/Palette.h"
#include "views/SettingsOverlay.h"
#include "views/ViewTest.h"

namespace brindle::test {

namespace {

using ::testing::ElementsAre;

class SettingsViewTest : public ViewTest {
protected:
    SettingsOverlay& overlay() { return *view.findChild<SettingsOverlay*>(); }
    SettingsView& panel() { return *view.findChild<SettingsView*>(); }
    QAbstractButton& control(const QString& name) {
        for (auto* button : panel().findChildren<QAbstractButton*>()) {
            if (button->accessibleName() == name)
                return *button;
        }
        throw std::logic_error("no such control");
    }
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
        view.state().showSettings = isShown;
        settle();
    }
    void slide(bool isShown) {
        withAnimation([&] { view.state().showSettings = isShown; });
        settle();
    }
    QColor shade() { return view.grab().toImage().pixelColor(10, 460); }
};

TEST_F(SettingsViewTest, LiesOverTheContentAreaOnly) {
    EXPECT_FALSE(overlay().isVisible());
    show(true);
    EXPECT_EQ(overlay().geometry(), QRect(0, 101, 350, 370));
    EXPECT_EQ(panel().geometry(), QRect(20, 60, 310, 250));
}

TEST_F(SettingsViewTest, WritesEachChoiceAtOnce) {
    show(true);
    EXPECT_EQ(chosen(), QStringList({"50", "Dark"}));
    click("100");
    EXPECT_THAT(sim.journal.take(), ElementsAre("store maxClipboardItems"));
    EXPECT_EQ(std::get<std::int64_t>(sim.store.values["maxClipboardItems"]), 100);
    click("Start at Login");
    EXPECT_TRUE(settings.launchAtLogin().value());
    click("System");
    EXPECT_EQ(std::get<std::string>(sim.store.values["appTheme"]), "System");
    EXPECT_EQ(chosen(), QStringList({"100", "Start at Login", "System"}));
    click("Start at Login");
    EXPECT_FALSE(settings.launchAtLogin().value());
    for (int i = 0; i < 40; ++i)
        add(std::to_string(i));
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
    settings.setMaxClipboardItems(25);
    settings.setAppTheme(AppTheme::light);
    settle();
    EXPECT_EQ(chosen(), QStringList({"25", "Light"}));
}

TEST_F(SettingsViewTest, IsWorkedByKeyboard) {
    show(true);
    control("Close").setFocus(Qt::TabFocusReason);
    QStringList stops;
    for (int i = 0; i < 3; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        stops += QApplication::focusWidget()->accessibleName();
    }
    EXPECT_EQ(stops, QStringList({"50", "Start at Login", "Dark"}));
    const auto press = [&](Qt::Key key) {
        QTest::keyClick(QApplication::focusWidget(), key);
        settle();
    };
    press(Qt::Key_Right);
    EXPECT_EQ(settings.appTheme().value(), AppTheme::system);
    press(Qt::Key_Right);
    press(Qt::Key_Left);
    press(Qt::Key_Left);
    press(Qt::Key_Left);
    EXPECT_EQ(settings.appTheme().value(), AppTheme::light);
    control("Start at Login").setFocus(Qt::TabFocusReason);
    press(Qt::Key_Space);
    EXPECT_TRUE(settings.launchAtLogin().value());
    press(Qt::Key_Escape);
    EXPECT_FALSE(view.state().showSettings.value());
    EXPECT_TRUE(view.hasFocus());
}

TEST_F(SettingsViewTest, IsChosenFromByKeyAlsoWhenNothingIsChosen) {
    settings.setMaxClipboardItems(7);
    show(true);
    control("25").setFocus(Qt::TabFocusReason);
    QTest::keyClick(&control("25"), Qt::Key_Space);
    settle();
    EXPECT_EQ(settings.maxClipboardItems().value(), 25);
}

TEST_F(SettingsViewTest, ClosesByTheLayerAtOnceAndNotByThePanel) {
    show(true);
    QTest::mouseClick(&panel(), Qt::LeftButton, {}, QPoint(150, 120));
    QTest::mousePress(&overlay(), Qt::LeftButton, {}, QPoint(5, 5));
    QTest::mouseRelease(&overlay(), Qt::LeftButton, {}, QPoint(150, 150));
    settle();
    EXPECT_TRUE(overlay().isVisible());
    QTest::mouseClick(&overlay(), Qt::LeftButton, {}, QPoint(5, 5));
    settle();
    EXPECT_FALSE(view.state().showSettings.value());
    EXPECT_FALSE(overlay().isVisible());
}

TEST_F(SettingsViewTest, SlidesInAndOutOverTwoTenthsOfASecond) {
    const QColor before = shade();
    slide(true);
    EXPECT_GE(panel().y(), 370);
    sim.queue.advance(0.1);
    EXPECT_GT(panel().y(), 60);
    EXPECT_LT(panel().y(), 370);
    sim.queue.advance(0.11);
    EXPECT_EQ(panel().y(), 60);
    EXPECT_LT(shade().lightness(), before.lightness());

    QTest::mouseClick(&control("Close"), Qt::LeftButton);
    sim.queue.advance(0.1);
    EXPECT_GT(panel().y(), 60);
    EXPECT_EQ(view.childAt(10, 110), list().viewport());
    sim.queue.advance(0.11);
    EXPECT_FALSE(overlay().isVisible());
    EXPECT_EQ(shade(), before);
}

TEST_F(SettingsViewTest, TurnsAroundAndChangesItsColoursOnTheWay) {
    slide(true);
    sim.queue.advance(0.1);
    const int halfway = panel().y();
    settings.setAppTheme(AppTheme::light);
    slide(false);
    EXPECT_NEAR(panel().y(), halfway, 40);
    EXPECT_EQ(panel().grab().toImage().pixelColor(150, 8), color(Role::surface, ColorScheme::light));
    slide(true);
    sim.queue.advance(0.3);
    EXPECT_EQ(panel().y(), 60);
}

TEST_F(SettingsViewTest, KeepsTheKeyboardFromTheListBelow) {
    list().setFocus(Qt::TabFocusReason);
    show(true);
    EXPECT_FALSE(list().hasFocus());
    control("Dark").setFocus(Qt::TabFocusReason);
    QTest::keyClick(&control("Dark"), Qt::Key_Tab);
    EXPECT_TRUE(searchField().hasFocus());
    show(false);
    EXPECT_EQ(list().focusPolicy(), Qt::TabFocus);
}

TEST_F(SettingsViewTest, TellsAssistiveTechnologyWhatIsOn) {
    settings.setLaunchAtLogin(true);
    show(true);
    const auto* toggle = QAccessible::queryAccessibleInterface(&control("Start at Login"));
    EXPECT_EQ(toggle->role(), QAccessible::CheckBox);
    EXPECT_TRUE(toggle->state().checked);
    const auto* segment = QAccessible::queryAccessibleInterface(&control("50"));
    EXPECT_EQ(segment->role(), QAccessible::RadioButton);
    EXPECT_TRUE(segment->state().checked);
    EXPECT_EQ(segment->parent()->text(QAccessible::Name), "History Size");
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&panel())->text(QAccessible::Name), "Settings");
}

}  // namespace

}  // namespace brindle::test
