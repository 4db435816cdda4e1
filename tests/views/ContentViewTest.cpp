#include "views/ContentView.h"

#include "views/Animation.h"
#include "views/ContentPopover.h"
#include "views/Palette.h"
#include "views/SymbolButton.h"
#include "views/ViewTest.h"

namespace brindle::test {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

class ContentViewTest : public ViewTest {
protected:
    SymbolButton& menuButton() {
        for (SymbolButton* button : view.findChildren<SymbolButton*>()) {
            if (button->accessibleName() == "Menu")
                return *button;
        }
        throw std::logic_error("no menu button");
    }
    void chooseFromHeader(const QString& title) {
        QTest::mouseClick(&menuButton(), Qt::LeftButton);
        ASSERT_NE(openMenu(), nullptr);
        for (QAction* action : openMenu()->actions()) {
            if (action->text() == title)
                action->trigger();
        }
        openMenu()->close();
    }
    QColor surface() { return view.grab().toImage().pixelColor(5, 5); }
};

TEST_F(ContentViewTest, RebuildsOnceForAnyNumberOfChanges) {
    int rebuilds = 0;
    QObject::connect(&view, &ContentView::rebuilt, &view, [&] { ++rebuilds; });
    add("fourth");
    add("fifth");
    history.createList("Work");
    view.state().searchText = std::string("f");
    EXPECT_EQ(rebuilds, 0);
    settle();
    EXPECT_EQ(rebuilds, 1);
    EXPECT_THAT(shownTexts(), ElementsAre("fifth", "fourth", "first"));
}

TEST_F(ContentViewTest, HasTheSizeOfThePopover) {
    EXPECT_EQ(view.size(), QSize(350, 500));
    EXPECT_EQ(list().geometry(), QRect(0, 101, 350, 370));
}

TEST_F(ContentViewTest, IsDarkOrLightByTheStoredThemeAndTheDesktop) {
    const QColor dark = color(Role::surface, ColorScheme::dark);
    const QColor light = color(Role::surface, ColorScheme::light);
    EXPECT_EQ(surface(), dark);
    const std::pair<std::string, QColor> themes[] = {
        {"Light", light}, {"Dark", dark}, {"System", light}, {"light", dark}, {"", dark}};
    for (const auto& [stored, expected] : themes) {
        sim.store.setString("appTheme", stored);
        settle();
        EXPECT_EQ(surface(), expected) << stored;
    }
    settings.setAppTheme(AppTheme::system);
    sim.schemes.prefer(ColorScheme::dark);
    settle();
    EXPECT_EQ(surface(), dark);
    sim.schemes.prefer(ColorScheme::light);
    settle();
    EXPECT_EQ(surface(), light);
}

TEST_F(ContentViewTest, TellsThePopoverOfAnotherScheme) {
    ContentPopover content(history, monitor, settings);
    int changes = 0;
    const Subscription subscription = content.onColorSchemeChange([&] { ++changes; });
    EXPECT_EQ(content.colorScheme(), ColorScheme::dark);
    settings.setAppTheme(AppTheme::light);
    sim.queue.run();
    EXPECT_EQ(content.colorScheme(), ColorScheme::light);
    settings.setAppTheme(AppTheme::light);
    sim.queue.run();
    EXPECT_EQ(changes, 1);
}

TEST_F(ContentViewTest, LeavesTheSearchFieldWithoutTheKeyboardUntilItIsClicked) {
    EXPECT_FALSE(searchField().hasFocus());
    QTest::keyClicks(&view, "x");
    EXPECT_EQ(view.state().searchText.value(), "");
    QTest::mouseClick(&searchField(), Qt::LeftButton);
    EXPECT_TRUE(view.state().isSearchFocused.value());
    QTest::keyClicks(&searchField(), "IR");
    settle();
    EXPECT_THAT(shownTexts(), ElementsAre("third", "first"));
    view.state().isSearchFocused = false;
    EXPECT_FALSE(searchField().hasFocus());
    view.hide();
    view.show();
    EXPECT_EQ(searchField().text(), "IR");
    EXPECT_FALSE(searchField().hasFocus());
}

TEST_F(ContentViewTest, IsTabbedThroughInTheOrderOfItsParts) {
    QStringList names;
    do {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        names += QApplication::focusWidget()->accessibleName();
    } while (names.back() != "Clipboard history" && names.size() < 10);
    EXPECT_EQ(names.mid(0, 3), QStringList({"Search...", "Menu", "All (3)"}));
    EXPECT_EQ(names.back(), "Clipboard history");
}

TEST_F(ContentViewTest, LetsTheArrowGoToTheListAndEscapeToTheWindow) {
    QTest::mouseClick(&searchField(), Qt::LeftButton);
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(&searchField(), &escape);
    EXPECT_FALSE(escape.isAccepted());
    QTest::keyClick(&searchField(), Qt::Key_Down);
    EXPECT_TRUE(list().hasFocus());
}

TEST_F(ContentViewTest, CopiesAndPastesInTheFieldThroughThePasteboard) {
    QTest::mouseClick(&searchField(), Qt::LeftButton);
    sim.clipboard.copy(SharedText("two\nlines"));
    sim.queue.run();
    QTest::keyClick(&searchField(), Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(view.state().searchText.value(), "two lines");
    QTest::keyClick(&searchField(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&searchField(), Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(view.state().searchText.value(), "");
    EXPECT_EQ(sim.clipboard.content()->string(), "two lines");
}

TEST_F(ContentViewTest, SetsFlagsFromTheHeadersMenu) {
    QTest::mouseClick(&menuButton(), Qt::LeftButton);
    ASSERT_NE(openMenu(), nullptr);
    QStringList titles;
    for (const QAction* action : openMenu()->actions())
        titles += action->isSeparator() ? "-" : action->text();
    EXPECT_EQ(titles, QStringList({"Settings", "About", "Send Feedback", "-", "Quit"}));
    EXPECT_EQ(openMenu()->x() + openMenu()->width(), menuButton().mapToGlobal(QPoint(30, 0)).x());
    openMenu()->close();

    bool wasAnimated = false;
    const Subscription watch = view.state().showSettings.subscribe([&](bool) { wasAnimated = isAnimatedChange(); });
    chooseFromHeader("Settings");
    EXPECT_TRUE(view.state().showSettings.value());
    EXPECT_TRUE(wasAnimated);
    chooseFromHeader("Settings");
    EXPECT_FALSE(view.state().showSettings.value());
    chooseFromHeader("About");
    EXPECT_TRUE(view.state().showAbout.value());
    sim.journal.take();
    chooseFromHeader("Quit");
    chooseFromHeader("Send Feedback");
    EXPECT_THAT(sim.journal.take(), ElementsAre("terminate", HasSubstr("mailto:")));
}

TEST_F(ContentViewTest, ShowsRingsAfterTabOnly) {
    const auto ring = color(Role::focusRing, ColorScheme::dark);
    const auto edge = [&] { return menuButton().grab().toImage().pixelColor(15, 1); };
    menuButton().setFocus(Qt::TabFocusReason);
    EXPECT_EQ(edge(), ring);
    QTest::mousePress(&menuButton(), Qt::LeftButton);
    EXPECT_NE(edge(), ring);
    QTest::mouseRelease(&menuButton(), Qt::LeftButton, {}, QPoint(-50, -50));
}

}  // namespace

}  // namespace brindle::test
