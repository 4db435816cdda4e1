#include "views/HistoryView.h"

#include <QAccessible>
#include <QScrollBar>

#include "views/ViewTest.h"

namespace brindle::test {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class HistoryViewTest : public ViewTest {
protected:
    std::vector<std::string> found(const std::string& text) {
        state().searchText = text;
        settle();
        return shownTexts();
    }
};

TEST_F(HistoryViewTest, PastesTheClickedEntryOnceThePopoverIsClosed) {
    searchField().setFocus(Qt::MouseFocusReason);
    settle();
    click(1);
    EXPECT_THAT(sim.journal.take(),
                ElementsAre("log Click detected!", "trust? (may prompt)", "log Has accessibility permission - pasting",
                            "close popover", "clear pasteboard", "set pasteboard: second",
                            "trust? (may prompt)"));  // the last one is the paste service's
    EXPECT_FALSE(state().isSearchFocused.value());
    EXPECT_FALSE(searchField().hasFocus());
    EXPECT_TRUE(monitor.isInternalCopy());
}

TEST_F(HistoryViewTest, ShowsTheGuideInsteadOfPastingWithoutTrust) {
    sim.trust.isTrusted = false;
    click(0);
    EXPECT_THAT(sim.journal.take(), ElementsAre("log Click detected!", "trust? (may prompt)",
                                                "log No accessibility permission - showing dialog"));
    EXPECT_TRUE(state().showAccessibilityDialog.value());
    EXPECT_FALSE(monitor.isInternalCopy());
}

TEST_F(HistoryViewTest, PastesOnlyWhatWasPressedAndReleased) {
    fill(20);
    const auto press = [&](QPoint place) { QTest::mousePress(list().viewport(), Qt::LeftButton, {}, place); };
    const auto release = [&](QPoint place) { QTest::mouseRelease(list().viewport(), Qt::LeftButton, {}, place); };
    press(middleOfRow(0));
    release(middleOfRow(1));
    press(middleOfRow(0));
    add("arrived under the pointer");
    settle();
    release(middleOfRow(0));
    found("21");
    EXPECT_EQ(list().verticalScrollBar()->value(), 0);
    press({100, 360});  // below the rows
    release({100, 360});
    // The second click of two of which the first closed a dialog that stood over the row.
    QMouseEvent second(QEvent::MouseButtonDblClick, middleOfRow(0), list().viewport()->mapToGlobal(middleOfRow(0)),
                       Qt::LeftButton, Qt::LeftButton, {});
    second.setTimestamp(1U << 31);
    QApplication::sendEvent(list().viewport(), &second);
    release(middleOfRow(0));
    EXPECT_THAT(sim.journal.take(), IsEmpty());
}

TEST_F(HistoryViewTest, OffersAMenuThatDoesWhatItSaysAndClosesThePopover) {
    click(0, Qt::RightButton);
    EXPECT_FALSE(openMenu()->actions().back()->isEnabled()) << "there is no list";
    EXPECT_EQ(takeMenuTitles(), QStringList({"Copy", "Delete", "Pin", "Add to List"}));
    history.createList("Work & Home");
    settle();
    click(1, Qt::RightButton);
    choose("Copy");
    EXPECT_THAT(sim.journal.take(), ElementsAre("clear pasteboard", "set pasteboard: second", "close popover"));
    EXPECT_TRUE(monitor.isInternalCopy());
    const std::pair<std::size_t, const char*> changes[] = {{1, "Pin"}, {2, "Work && Home"}, {0, "Delete"}};
    for (const auto& [row, title] : changes) {
        click(row, Qt::RightButton);
        choose(title);
        EXPECT_THAT(sim.journal.take(), ElementsAre("store BrindleHistory", "close popover")) << title;
    }
    const auto& left = history.history().value();
    EXPECT_TRUE(left[0].isPinned);
    EXPECT_EQ(left[1].listId, history.customLists().value()[0].id);
    settle();
    EXPECT_THAT(shownTexts(), ElementsAre("second", "first"));
    click(0, Qt::RightButton);
    EXPECT_EQ(takeMenuTitles(), QStringList({"Copy", "Delete", "Unpin", "Add to List", "Work && Home"}));
    // The entry goes while its menu is open.
    click(0, Qt::RightButton);
    history.deleteItem(ClipboardItem(history.history().value().front()));
    settle();
    choose("Delete");
    settle();
    EXPECT_THAT(shownTexts(), ElementsAre("first"));
}

TEST_F(HistoryViewTest, ShowsTheSelectedTabAndWhatIsSearchedInIt) {
    history.createList("Work");
    const std::string work = history.customLists().value()[0].id.text();
    history.togglePin(history.history().value()[0]);
    history.togglePin(history.history().value()[2]);
    history.moveItem(history.history().value()[1], history.customLists().value()[0].id);
    const struct {
        std::string tab;
        std::string search;
        std::vector<std::string> shown;
    } cases[] = {
        {"All", "", {"third", "second", "first"}},
        {"Pinned", "", {"third", "first"}},
        {work, "", {"second"}},
        {Uuid::generate().text(), "", {}},
        {"Pinned", "IR", {"third", "first"}},
        {"Pinned", "IRS", {"first"}},
        {"Pinned", " ", {}},
        {"neither", "", {}},
    };
    for (const auto& each : cases) {
        state().selectedTab = each.tab;
        EXPECT_EQ(found(each.search), each.shown) << each.tab << each.search;
        EXPECT_EQ(list().isVisible(), each.tab != "neither") << each.tab;
    }
    state().selectedTab = std::string("All");
    add("caf\xC3\xA9");
    EXPECT_THAT(found("cafe"), IsEmpty());
    EXPECT_THAT(found("cafe\xCC\x81"), ElementsAre("caf\xC3\xA9"));
}

TEST_F(HistoryViewTest, IsWorkedWithTheKeyboard) {
    fill(20);
    list().setFocus(Qt::TabFocusReason);
    EXPECT_EQ(list().grab().toImage().pixelColor(100, 3), color(Role::focusRing, ColorScheme::dark));
    EXPECT_EQ(list().focusedRow(), 0);
    const std::pair<Qt::Key, std::size_t> moves[] = {{Qt::Key_Up, 0},     {Qt::Key_Down, 1}, {Qt::Key_PageDown, 7},
                                                     {Qt::Key_PageUp, 1}, {Qt::Key_End, 22}, {Qt::Key_Down, 22},
                                                     {Qt::Key_Home, 0},   {Qt::Key_Down, 1}};
    for (const auto& [key, row] : moves) {
        press(key);
        EXPECT_EQ(list().focusedRow(), row) << key;
        EXPECT_TRUE(list().viewport()->rect().contains(list().rowRect(row))) << key;
    }
    list().clearFocus();
    list().verticalScrollBar()->setValue(2000);
    list().setFocus(Qt::TabFocusReason);
    EXPECT_TRUE(list().viewport()->rect().contains(list().rowRect(1)));
    add("above the focused one");
    settle();
    EXPECT_EQ(list().focusedRow(), 2);
    add("entry 18");  // the focused one, anew
    settle();
    EXPECT_EQ(list().focusedRow(), 2);
    press(Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_FALSE(takeMenu().isEmpty());
    repeat(Qt::Key_Return);
    EXPECT_THAT(sim.journal.take(), IsEmpty());
    press(Qt::Key_Return);
    EXPECT_EQ(sim.clipboard.content()->string(), "entry 19");
}

TEST_F(HistoryViewTest, ShowsItsRowsToAssistiveTechnology) {
    QAccessibleInterface* rows = QAccessible::queryAccessibleInterface(&list());
    ASSERT_NE(rows, nullptr);
    EXPECT_EQ(rows->role(), QAccessible::List);
    ASSERT_EQ(rows->childCount(), 3);
    QAccessibleInterface* row = rows->child(1);
    EXPECT_EQ(row->role(), QAccessible::ListItem);
    EXPECT_TRUE(row->text(QAccessible::Name).startsWith("second, "));
    EXPECT_EQ(rows->indexOfChild(row), 1);
    state().showSettings = true;
    settle();
    row->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_THAT(sim.journal.take(), IsEmpty());
    state().showSettings = false;
    settle();
    row->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(sim.clipboard.content()->string(), "second");

    // The same row, wherever its entry goes.
    fill(30);
    EXPECT_EQ(rows->indexOfChild(row), 31);
    history.togglePin(list().filteredItems()[31]);
    settle();
    EXPECT_TRUE(row->text(QAccessible::Name).endsWith(", pinned"));
    EXPECT_EQ(rows->child(31), row);
    history.deleteItem(list().filteredItems()[31]);
    settle();
    EXPECT_FALSE(row->isValid());
}

}  // namespace

}  // namespace brindle::test
