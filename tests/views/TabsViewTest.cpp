#include "views/TabsView.h"

#include "platform/qt/QtText.h"
#include "views/TabButton.h"
#include "views/ViewTest.h"

namespace brindle::test {

namespace {

using ::testing::ElementsAre;

class TabsViewTest : public ViewTest {
protected:
    TabsView& strip() { return *view.findChild<TabsView*>(); }
    QList<TabButton*> tabs() {
        auto found = strip().findChildren<TabButton*>();
        std::ranges::sort(found, {}, [](TabButton* tab) { return tab->x(); });
        return found;
    }
    SymbolButton& addButton() { return *strip().findChild<SymbolButton*>(); }
    std::vector<std::string> labels() {
        std::vector<std::string> texts;
        for (const TabButton* tab : tabs())
            texts.push_back(toUtf8(tab->accessibleName()) + (tab->isSelected() ? " *" : ""));
        return texts;
    }
    Uuid createList(const std::string& name) {
        history.createList(name);
        settle();
        return history.customLists().value().back().id;
    }
    void createLists(int count) {
        for (int i = 1; i <= count; ++i)
            createList("List " + std::to_string(i));
    }
    const std::string& selectedTab() { return state().selectedTab.value(); }
};

TEST_F(TabsViewTest, CountsTheWholeHistoryWhateverIsSearched) {
    EXPECT_THAT(labels(), ElementsAre("All (3) *", "Pinned (0)"));
    const Uuid work = createList("Work");
    createList("Work");
    const auto items = history.history().value();
    history.moveItem(items[0], work);
    history.moveItem(items[2], work);
    history.togglePin(items[1]);
    state().searchText = std::string("nothing like it");
    settle();
    EXPECT_THAT(labels(), ElementsAre("All (3) *", "Pinned (1)", "Work (2)", "Work (0)"));
}

TEST_F(TabsViewTest, SelectsWhatIsClickedAndKeepsItWhenItIsRenamed) {
    createList("Same");
    const Uuid second = createList("Same");
    QTest::mouseClick(tabs()[3], Qt::LeftButton);
    EXPECT_EQ(selectedTab(), second.text());
    history.renameList(history.customLists().value()[1], "Other");
    settle();
    EXPECT_THAT(labels(), ElementsAre("All (3)", "Pinned (0)", "Same (0)", "Other (0) *"));
    state().newListName = std::string("left over");
    QTest::mouseClick(&addButton(), Qt::LeftButton);
    EXPECT_EQ(state().newListName.value(), "");
    EXPECT_TRUE(state().showNewListAlert.value());
}

TEST_F(TabsViewTest, HasAMenuOnTheTabsOfListsOnly) {
    const Uuid work = createList("Work & Play");
    QTest::mouseClick(tabs()[1], Qt::RightButton);
    EXPECT_EQ(openMenu(), nullptr);
    QTest::mouseClick(tabs()[2], Qt::RightButton);
    const auto actions = takeMenu();
    ASSERT_EQ(actions.size(), 2);
    EXPECT_EQ(selectedTab(), "All");
    actions[0]->trigger();
    EXPECT_EQ(state().listToRename.value()->id, work);
    EXPECT_EQ(state().renameListName.value(), "Work & Play");
    EXPECT_TRUE(state().showRenameListAlert.value());
    actions[1]->trigger();
    EXPECT_EQ(state().listToDelete.value()->id, work);
    EXPECT_TRUE(state().showDeleteListAlert.value());
}

TEST_F(TabsViewTest, SurvivesAListThatGoesWhileItsMenuIsOpenOrItsTabHasTheKeyboard) {
    createList("Work");
    tabs()[2]->setFocus(Qt::TabFocusReason);
    press(Qt::Key_Menu);
    ASSERT_NE(openMenu(), nullptr);
    history.deleteList(history.customLists().value()[0]);
    settle();
    EXPECT_THAT(labels(), ElementsAre("All (3) *", "Pinned (0)"));
    EXPECT_TRUE(tabs()[0]->hasFocus());
    openMenu()->actions()[0]->trigger();
    openMenu()->close();
    settle();
    press(Qt::Key_Return);
    EXPECT_TRUE(history.customLists().value().empty());
}

TEST_F(TabsViewTest, IsOneStopForTheKeyboardAndGoneThroughByArrows) {
    createLists(2);
    tabs()[0]->setFocus(Qt::TabFocusReason);
    const std::pair<int, int> steps[] = {{Qt::Key_Right, 1}, {Qt::Key_Right, 2}, {Qt::Key_Left, 1}, {Qt::Key_End, 3},
                                         {Qt::Key_Right, 3}, {Qt::Key_Home, 0},  {Qt::Key_Left, 0}, {Qt::Key_End, 3}};
    for (const auto& [key, expected] : steps) {
        press(key);
        EXPECT_TRUE(tabs()[expected]->hasFocus() && tabs()[expected]->isSelected()) << key;
    }
    press(Qt::Key_Tab);
    EXPECT_TRUE(addButton().hasFocus());
    press(Qt::Key_Backtab);
    EXPECT_TRUE(tabs()[3]->hasFocus());
    QTest::mouseClick(tabs()[2], Qt::LeftButton);
    settle();
    EXPECT_TRUE(tabs()[2]->hasFocus());
    press(Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_FALSE(takeMenu().isEmpty());
    press(Qt::Key_Down);
    EXPECT_TRUE(list().hasFocus());
    createLists(18);
    tabs()[0]->setFocus(Qt::TabFocusReason);
    for (int i = 0; i < 10; ++i)
        press(Qt::Key_PageDown);
    EXPECT_TRUE(tabs().back()->hasFocus() && tabs().back()->isSelected());
    EXPECT_TRUE(strip().rect().contains(tabs().back()->geometry()));
    press(Qt::Key_Home);
    EXPECT_EQ(tabs()[0]->x(), 16);
}

TEST_F(TabsViewTest, IsDraggedWithoutSelecting) {
    createLists(20);
    TabButton& tab = *tabs()[2];
    const int before = tab.x();
    const QPoint start = tab.mapToGlobal(QPoint(20, 10));
    const auto moveLeft = [&](int x) {
        const QPoint place = start - QPoint(x, 0);
        QMouseEvent event(QEvent::MouseMove, tab.mapFromGlobal(place), place, Qt::NoButton, Qt::LeftButton, {});
        QApplication::sendEvent(&tab, &event);
    };
    QTest::mousePress(&tab, Qt::LeftButton, {}, QPoint(20, 10));
    moveLeft(5);
    EXPECT_EQ(tab.x(), before);
    moveLeft(100);
    moveLeft(120);
    EXPECT_EQ(tab.x(), before - 120);
    QTest::mouseRelease(&tab, Qt::LeftButton, {}, tab.mapFromGlobal(start - QPoint(120, 0)));
    EXPECT_EQ(selectedTab(), "All");
    QTest::mouseClick(&tab, Qt::LeftButton);
    EXPECT_NE(selectedTab(), "All");
}

}  // namespace

}  // namespace brindle::test
