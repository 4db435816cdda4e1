#include "views/ContentView.h"

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

TEST_F(ContentViewTest, LeavesTheSearchFieldWithoutTheKeyboardUntilItIsClicked) {
    EXPECT_FALSE(searchField().hasFocus());
    QTest::keyClicks(&view, "x");
    EXPECT_EQ(state().searchText.value(), "");
    QTest::mouseClick(&searchField(), Qt::LeftButton);
    EXPECT_TRUE(state().isSearchFocused.value());
    QTest::keyClicks(&searchField(), "IR");
    settle();
    EXPECT_THAT(shownTexts(), ElementsAre("third", "first"));
    QInputMethodEvent composing("한", {});
    QApplication::sendEvent(&searchField(), &composing);
    EXPECT_EQ(state().searchText.value(), "IR");
    QInputMethodEvent composed;
    composed.setCommitString("한글");
    QApplication::sendEvent(&searchField(), &composed);
    EXPECT_EQ(state().searchText.value(), "IR한글");
    QTest::keyClick(&searchField(), Qt::Key_Backspace);
    QTest::keyClick(&searchField(), Qt::Key_Backspace);
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
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(&searchField(), &escape);
    EXPECT_FALSE(escape.isAccepted()) << "it is the window's";
    press(Qt::Key_Down);
    EXPECT_TRUE(list().hasFocus());
}

TEST_F(ContentViewTest, SetsFlagsFromTheHeadersMenu) {
    QTest::mouseClick(&menuButton(), Qt::LeftButton);
    EXPECT_EQ(takeMenuTitles(), QStringList({"Settings", "About", "Send Feedback", "-", "Quit"}));
    for (const bool isShown : {true, false}) {
        chooseFromHeader("Settings");
        EXPECT_EQ(state().showSettings.value(), isShown);
    }
    chooseFromHeader("About");
    EXPECT_TRUE(state().showAbout.value());
    sim.journal.take();
    chooseFromHeader("Quit");
    chooseFromHeader("Send Feedback");
    EXPECT_THAT(sim.journal.take(), ElementsAre("terminate", HasSubstr("mailto:")));
}

}  // namespace

}  // namespace brindle::test
