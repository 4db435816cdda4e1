#include "views/ContentView.h"

#include "views/Animation.h"
#include "views/ContentPopover.h"
#include "views/SymbolButton.h"
#include "views/ViewTest.h"

namespace brindle::test {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

class ContentViewTest : public ViewTest {
protected:
    SymbolButton& menuButton() { return named<SymbolButton>(view, "Menu"); }
    void chooseFromHeader(const QString& title) {
        QTest::mouseClick(&menuButton(), Qt::LeftButton);
        choose(title);
    }
};

TEST_F(ContentViewTest, RebuildsOnceForAnyNumberOfChanges) {
    EXPECT_EQ(list().geometry(), QRect(0, 101, 350, 370));
    int rebuilds = 0;
    QObject::connect(&view, &ContentView::rebuilt, &view, [&] { ++rebuilds; });
    add("fourth");
    add("fifth");
    history.createList("Work");
    state().searchText = std::string("f");
    EXPECT_EQ(rebuilds, 0);
    settle();
    EXPECT_EQ(rebuilds, 1);
    EXPECT_THAT(shownTexts(), ElementsAre("fifth", "fourth", "first"));
}

TEST_F(ContentViewTest, IsDarkOrLightByTheStoredThemeAndTheDesktopAndTellsThePopover) {
    const ColorScheme dark = ColorScheme::dark;
    const ColorScheme light = ColorScheme::light;
    ContentPopover content(history, monitor, settings);
    static_cast<void>(content.widget());
    int changes = 0;
    const Subscription subscription = content.onColorSchemeChange([&] { ++changes; });
    const auto expectScheme = [&](ColorScheme scheme, int changesUpToNow) {
        settle();
        EXPECT_EQ(pixel(view, {5, 5}), color(Role::surface, scheme));
        EXPECT_EQ(content.colorScheme(), scheme);
        EXPECT_EQ(changes, changesUpToNow);
    };
    expectScheme(dark, 0);
    const std::tuple<const char*, ColorScheme, int> themes[] = {
        {"Light", light, 1}, {"Dark", dark, 2}, {"System", light, 3}, {"light", dark, 4}, {"", dark, 4}};
    for (const auto& [stored, scheme, changesUpToNow] : themes) {
        sim.store.setString("appTheme", stored);
        expectScheme(scheme, changesUpToNow);
    }
    settings.setAppTheme(AppTheme::system);
    sim.schemes.prefer(dark);
    expectScheme(dark, 4);
    sim.schemes.prefer(light);
    expectScheme(light, 5);
}

TEST_F(ContentViewTest, LeavesTheSearchFieldWithoutTheKeyboardUntilItIsClicked) {
    EXPECT_FALSE(searchField().hasFocus());
    QTest::keyClicks(&view, "x");
    EXPECT_EQ(state().searchText.value(), "");
    QTest::mouseClick(&searchField(), Qt::LeftButton);
    EXPECT_TRUE(state().isSearchFocused.value());
    QTest::keyClicks(&searchField(), "IR");
    settle();
    EXPECT_THAT(shownTexts(), ElementsAre("third", "first"));
    state().isSearchFocused = false;
    EXPECT_FALSE(searchField().hasFocus());
    view.hide();
    view.show();
    EXPECT_EQ(searchField().text(), "IR");
    EXPECT_FALSE(searchField().hasFocus());
}

TEST_F(ContentViewTest, IsWorkedByKeyboardFromTheFieldToTheList) {
    const auto stops = tabStops(6);
    EXPECT_EQ(stops.mid(0, 3), QStringList({"Search...", "Menu", "All (3)"}));
    EXPECT_EQ(stops[4], "Clipboard history");
    QTest::mouseClick(&searchField(), Qt::LeftButton);
    sim.clipboard.copy(SharedText("two\nlines"));
    sim.queue.run();
    press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(state().searchText.value(), "two lines");
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(state().searchText.value(), "");
    EXPECT_EQ(sim.clipboard.content()->string(), "two lines");
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(&searchField(), &escape);
    EXPECT_FALSE(escape.isAccepted()) << "it is the window's";
    press(Qt::Key_Down);
    EXPECT_TRUE(list().hasFocus());
}

TEST_F(ContentViewTest, SetsFlagsFromTheHeadersMenu) {
    QTest::mouseClick(&menuButton(), Qt::LeftButton);
    ASSERT_NE(openMenu(), nullptr);
    EXPECT_EQ(openMenu()->x() + openMenu()->width(), menuButton().mapToGlobal(QPoint(30, 0)).x());
    EXPECT_EQ(takeMenuTitles(), QStringList({"Settings", "About", "Send Feedback", "-", "Quit"}));
    bool wasAnimated = false;
    const Subscription watch = state().showSettings.subscribe([&](bool) { wasAnimated = isAnimatedChange(); });
    for (const bool isShown : {true, false}) {
        chooseFromHeader("Settings");
        EXPECT_EQ(state().showSettings.value(), isShown);
        EXPECT_TRUE(wasAnimated);
    }
    chooseFromHeader("About");
    EXPECT_TRUE(state().showAbout.value());
    sim.journal.take();
    chooseFromHeader("Quit");
    chooseFromHeader("Send Feedback");
    EXPECT_THAT(sim.journal.take(), ElementsAre("terminate", HasSubstr("mailto:")));
}

TEST_F(ContentViewTest, ShowsRingsAfterTabOnly) {
    const auto ring = color(Role::focusRing, ColorScheme::dark);
    menuButton().setFocus(Qt::TabFocusReason);
    EXPECT_EQ(pixel(menuButton(), {15, 1}), ring);
    QTest::mousePress(&menuButton(), Qt::LeftButton);
    EXPECT_NE(pixel(menuButton(), {15, 1}), ring);
    QTest::mouseRelease(&menuButton(), Qt::LeftButton, {}, QPoint(-50, -50));
}

}  // namespace

}  // namespace brindle::test
