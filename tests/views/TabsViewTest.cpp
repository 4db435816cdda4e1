#include "views/TabsView.h"

#include <QAccessible>

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
    /// As the window system reports it: the pointer is over a tab.
    void turnWheel(QPoint pixels, QPoint angle) {
        const QPoint place = strip().mapTo(&view, QPoint(40, 10));
        QWheelEvent event(place, view.mapToGlobal(place), pixels, angle, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QSpontaneKeyEvent::setSpontaneous(&event);
        qApp->notify(view.windowHandle(), &event);
    }
    bool isInView(const QWidget& item) { return strip().rect().contains(item.geometry()); }
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
    for (const ClipboardItem& item : items)
        history.deleteItem(item);
    settle();
    EXPECT_THAT(labels(), ElementsAre("All (0) *", "Pinned (0)", "Work (0)", "Work (0)"));
}

TEST_F(TabsViewTest, SelectsWhatIsClickedAndKeepsItWhenItIsRenamed) {
    const Uuid lists[] = {createList("Same"), createList("Same")};
    for (const int i : {0, 1}) {
        QTest::mouseClick(tabs()[2 + i], Qt::LeftButton);
        EXPECT_EQ(selectedTab(), lists[i].text());
    }
    history.renameList(history.customLists().value()[1], "Other");
    settle();
    EXPECT_THAT(labels(), ElementsAre("All (3)", "Pinned (0)", "Same (0)", "Other (0) *"));
    EXPECT_FALSE(tabs()[3]->hasFocus());
    state().newListName = std::string("left over");
    QTest::mouseClick(&addButton(), Qt::LeftButton);
    EXPECT_EQ(state().newListName.value(), "");
    EXPECT_TRUE(state().showNewListAlert.value());
}

TEST_F(TabsViewTest, LiesWhereTheDesignHasItWithAnyNameAsOneShortPlainLine) {
    const std::string names[] = {std::string(10000, 'm'),
                                 "two\nlines\r\n\tand more",
                                 "   ",
                                 "<b>bold</b> &amp; <img src=x>",
                                 "רשימה של דברים",
                                 "\u202Eturned",
                                 "👩‍👩‍👧‍👦",
                                 "",
                                 std::string("\0x", 2)};
    for (const std::string& name : names)
        createList(name);
    int end = 16 - 12;
    for (const TabButton* tab : tabs()) {
        EXPECT_NEAR(tab->x(), end + 12, 1);
        EXPECT_NEAR(tab->width(), tab->exactWidth(), 1);
        EXPECT_LE(tab->width(), 230);
        EXPECT_EQ(tab->height(), 28);
        end = tab->x() + tab->width();
    }
    EXPECT_NEAR(addButton().x(), end + 12, 1);
    EXPECT_GT(tabs()[5]->exactWidth(), 150) << "a name's markup takes the room of its letters";
    for (qsizetype i = 0; i < std::ssize(names); ++i)
        EXPECT_EQ(tabs()[i + 2]->title(), toQString(names[i]));
    EXPECT_EQ(pixel(strip(), {tabs()[0]->x() + 3, 14}), color(Role::selection, ColorScheme::dark));
    EXPECT_EQ(pixel(strip(), {tabs()[1]->x() + 3, 14}), color(Role::surface, ColorScheme::dark));
}

TEST_F(TabsViewTest, HasAMenuOnTheTabsOfListsOnly) {
    const Uuid work = createList("Work & Play");
    for (const int tab : {0, 1}) {
        QTest::mouseClick(tabs()[tab], Qt::RightButton);
        EXPECT_EQ(openMenu(), nullptr);
    }
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
    press(Qt::Key_PageDown);
    const int page = static_cast<int>(tabs().indexOf(qobject_cast<TabButton*>(QApplication::focusWidget())));
    EXPECT_TRUE(page > 2 && page < 10) << page;
    press(Qt::Key_PageUp);
    EXPECT_TRUE(tabs()[0]->hasFocus());
    for (int i = 0; i < 10; ++i)
        press(Qt::Key_PageDown);
    EXPECT_TRUE(tabs().back()->hasFocus() && tabs().back()->isSelected());
}

TEST_F(TabsViewTest, ScrollsByAnyWheelAndStopsAtItsEnds) {
    turnWheel({}, {0, -120});
    EXPECT_EQ(tabs()[0]->x(), 16) << "without need";
    createLists(20);
    struct Turn {
        QPoint pixels;
        QPoint angle;
        int moved;
    };
    const Turn turns[] = {{{}, {0, -120}, -60},    {{}, {-120, 0}, -60}, {{}, {0, 60}, 30},
                          {{0, -7}, {0, -14}, -7}, {{9, 2}, {18, 4}, 9}, {{}, {0, 1200}, 88}};
    for (const Turn& turn : turns) {
        const int before = tabs()[0]->x();
        turnWheel(turn.pixels, turn.angle);
        EXPECT_EQ(tabs()[0]->x() - before, turn.moved);
    }
    EXPECT_EQ(tabs()[0]->x(), 16);
    turnWheel({}, {0, -120000});
    EXPECT_EQ(addButton().x() + addButton().width(), 350 - 16);
    turnWheel({}, {0, 120000});
    for (int i = 0; i < 8; ++i)
        turnWheel({}, {0, -15});
    EXPECT_EQ(tabs()[0]->x(), 16 - 60);
}

TEST_F(TabsViewTest, IsDraggedWithoutSelecting) {
    createLists(20);
    TabButton& tab = *tabs()[2];
    const int before = tab.x();
    const QPoint start = tab.mapToGlobal(QPoint(20, 10));
    const auto moveLeft = [&](int x) { drag(tab, tab.mapFromGlobal(start - QPoint(x, 0))); };
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

TEST_F(TabsViewTest, BringsIntoViewWhatIsSelectedOrFocused) {
    createLists(20);
    EXPECT_FALSE(isInView(*tabs()[15]));
    state().selectedTab = history.customLists().value()[13].id.text();
    settle();
    EXPECT_TRUE(isInView(*tabs()[15]));
    addButton().setFocus(Qt::TabFocusReason);
    add("another");
    settle();
    EXPECT_TRUE(isInView(addButton()));
    tabs()[15]->setFocus();
    press(Qt::Key_Home);
    EXPECT_EQ(tabs()[0]->x(), 16);
}

TEST_F(TabsViewTest, IsAListOfPageTabsForAssistiveTechnology) {
    const Uuid work = createList("Work");
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&strip())->role(), QAccessible::PageTabList);
    auto* tab = QAccessible::queryAccessibleInterface(tabs()[2]);
    EXPECT_EQ(tab->role(), QAccessible::PageTab);
    EXPECT_TRUE(tab->state().selectable && tab->state().focusable && !tab->state().selected);
    tab->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    settle();
    EXPECT_EQ(selectedTab(), work.text());
    EXPECT_TRUE(tab->state().selected);
}

}  // namespace

}  // namespace brindle::test
