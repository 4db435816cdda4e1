#include "views/HistoryView.h"

#include <QAccessible>
#include <QElapsedTimer>
#include <QScrollBar>
#include <QWheelEvent>

#include "views/AppIcon.h"
#include "views/Palette.h"
#include "views/ViewTest.h"

namespace brindle::test {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class HistoryViewTest : public ViewTest {};

TEST_F(HistoryViewTest, PastesTheClickedEntryOnceThePopoverIsClosed) {
    searchField().setFocus(Qt::MouseFocusReason);
    settle();
    click(1);
    EXPECT_THAT(sim.journal.take(),
                ElementsAre("log Click detected!", "trust? (may prompt)", "log Has accessibility permission - pasting",
                            "close popover", "clear pasteboard", "set pasteboard: second",
                            "trust? (may prompt)"));  // the last one is the paste service's
    EXPECT_FALSE(view.state().isSearchFocused.value());
    EXPECT_FALSE(searchField().hasFocus());
    EXPECT_TRUE(monitor.isInternalCopy());
}

TEST_F(HistoryViewTest, ShowsTheGuideInsteadOfPastingWithoutTrust) {
    sim.trust.isTrusted = false;
    click(0);
    EXPECT_THAT(sim.journal.take(), ElementsAre("log Click detected!", "trust? (may prompt)",
                                                "log No accessibility permission - showing dialog"));
    EXPECT_TRUE(view.state().showAccessibilityDialog.value());
    EXPECT_FALSE(monitor.isInternalCopy());
}

TEST_F(HistoryViewTest, PastesWithoutADelegateToo) {
    sim.self.setDelegate(nullptr);
    click(0);
    EXPECT_EQ(sim.clipboard.content()->string(), "third");
}

TEST_F(HistoryViewTest, PastesOnlyWhatWasPressedAndReleased) {
    QTest::mousePress(list().viewport(), Qt::LeftButton, {}, middleOfRow(0));
    QTest::mouseRelease(list().viewport(), Qt::LeftButton, {}, middleOfRow(1));
    QTest::mousePress(list().viewport(), Qt::LeftButton, {}, middleOfRow(0));
    add("arrived under the pointer");
    settle();
    QTest::mouseRelease(list().viewport(), Qt::LeftButton, {}, middleOfRow(0));
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, QPoint(100, 360));
    EXPECT_THAT(sim.journal.take(), IsEmpty());
}

TEST_F(HistoryViewTest, OffersCopyDeletePinAndTheUsersListsInThatOrder) {
    history.createList("Work & Home");
    settle();
    QTest::mouseClick(list().viewport(), Qt::RightButton, {}, middleOfRow(0));
    ASSERT_NE(openMenu(), nullptr);
    QStringList titles;
    for (const QAction* action : openMenu()->actions() + openMenu()->actions().back()->menu()->actions())
        titles += action->text();
    EXPECT_EQ(titles, QStringList({"Copy", "Delete", "Pin", "Add to List", "Work && Home"}));
    openMenu()->close();

    history.togglePin(history.history().value()[0]);
    settle();
    QTest::mouseClick(list().viewport(), Qt::RightButton, {}, middleOfRow(0));
    EXPECT_EQ(openMenu()->actions()[2]->text(), "Unpin");
    openMenu()->close();
}

TEST_F(HistoryViewTest, HasAnEmptySubmenuWithoutLists) {
    QTest::mouseClick(list().viewport(), Qt::RightButton, {}, middleOfRow(0));
    ASSERT_NE(openMenu(), nullptr);
    ASSERT_NE(openMenu()->actions().back()->menu(), nullptr);
    EXPECT_TRUE(openMenu()->actions().back()->menu()->actions().isEmpty());
    openMenu()->close();
}

TEST_F(HistoryViewTest, DoesWhatTheMenuSaysAndClosesThePopover) {
    history.createList("Work");
    settle();
    choose(1, "Copy");
    EXPECT_THAT(sim.journal.take(), ElementsAre("clear pasteboard", "set pasteboard: second", "close popover"));
    EXPECT_TRUE(monitor.isInternalCopy());

    choose(1, "Pin");
    EXPECT_THAT(sim.journal.take(), ElementsAre("store BrindleHistory", "close popover"));
    EXPECT_TRUE(history.history().value()[1].isPinned);

    choose(2, "Work");
    EXPECT_THAT(sim.journal.take(), ElementsAre("store BrindleHistory", "close popover"));
    EXPECT_EQ(history.history().value()[2].listId, history.customLists().value()[0].id);

    choose(0, "Delete");
    EXPECT_THAT(sim.journal.take(), ElementsAre("store BrindleHistory", "close popover"));
    settle();
    EXPECT_THAT(shownTexts(), ElementsAre("second", "first"));
}

TEST_F(HistoryViewTest, ShowsTheSelectedTabAndWhatIsSearchedInIt) {
    history.createList("Work");
    const CustomList work = history.customLists().value()[0];
    history.togglePin(history.history().value()[0]);
    history.togglePin(history.history().value()[2]);
    history.moveItem(history.history().value()[1], work.id);
    const std::pair<std::string, std::vector<std::string>> tabs[] = {{"All", {"third", "second", "first"}},
                                                                     {"Pinned", {"third", "first"}},
                                                                     {work.id.text(), {"second"}},
                                                                     {Uuid::generate().text(), {}}};
    for (const auto& [tab, expected] : tabs) {
        view.state().selectedTab = tab;
        settle();
        EXPECT_EQ(shownTexts(), expected) << tab;
        EXPECT_TRUE(list().isVisible());
    }
    view.state().selectedTab = std::string("Pinned");
    view.state().searchText = std::string("IR");
    settle();
    EXPECT_THAT(shownTexts(), ElementsAre("third", "first"));
    view.state().searchText = std::string("IRS");
    settle();
    EXPECT_THAT(shownTexts(), ElementsAre("first"));
    view.state().searchText = std::string(" ");
    settle();
    EXPECT_THAT(shownTexts(), IsEmpty());
    view.state().selectedTab = std::string("neither");
    settle();
    EXPECT_FALSE(list().isVisible());
}

TEST_F(HistoryViewTest, FindsAnAccentThatIsTypedAfterItsLetter) {
    add("caf\xC3\xA9");
    view.state().searchText = std::string("cafe");
    settle();
    EXPECT_THAT(shownTexts(), IsEmpty());
    view.state().searchText = std::string("cafe\xCC\x81");
    settle();
    EXPECT_THAT(shownTexts(), ElementsAre("caf\xC3\xA9"));
}

TEST_F(HistoryViewTest, IsWorkedWithTheKeyboard) {
    for (int i = 0; i < 20; ++i)
        add("entry " + std::to_string(i));
    settle();
    list().setFocus(Qt::TabFocusReason);
    EXPECT_EQ(list().focusedRow(), 0);
    const std::pair<Qt::Key, std::size_t> moves[] = {{Qt::Key_Up, 0},     {Qt::Key_Down, 1}, {Qt::Key_PageDown, 7},
                                                     {Qt::Key_PageUp, 1}, {Qt::Key_End, 22}, {Qt::Key_Down, 22},
                                                     {Qt::Key_Home, 0},   {Qt::Key_Down, 1}};
    for (const auto& [key, row] : moves) {
        QTest::keyClick(&list(), key);
        EXPECT_EQ(list().focusedRow(), row) << key;
        EXPECT_TRUE(list().viewport()->rect().contains(list().rowRect(row))) << key;
    }
    add("above the focused one");
    settle();
    EXPECT_EQ(list().focusedRow(), 2);
    QTest::keyClick(&list(), Qt::Key_F10, Qt::ShiftModifier);
    ASSERT_NE(openMenu(), nullptr);
    openMenu()->close();
    QTest::keyClick(&list(), Qt::Key_Return);
    EXPECT_EQ(sim.clipboard.content()->string(), "entry 18");
}

TEST_F(HistoryViewTest, ScrollsByWheelAndBackToTheTopForAnotherSearch) {
    for (int i = 0; i < 20; ++i)
        add("entry " + std::to_string(i));
    settle();
    const QScrollBar& bar = *list().verticalScrollBar();
    EXPECT_EQ(bar.maximum(), 23 * 57 - 370);
    const auto turn = [&](QPoint pixels, QPoint angle) {
        QWheelEvent event(QPointF(9, 9), QPointF(9, 9), pixels, angle, Qt::NoButton, {}, Qt::NoScrollPhase, false);
        QApplication::sendEvent(list().viewport(), &event);
    };
    turn({}, {0, -120});
    EXPECT_EQ(bar.value(), 60);
    turn({0, -7}, {0, -120});
    EXPECT_EQ(bar.value(), 67);
    add("another");
    settle();
    EXPECT_EQ(bar.value(), 67);
    view.state().searchText = std::string("entry");
    settle();
    EXPECT_EQ(bar.value(), 0);
}

TEST_F(HistoryViewTest, DragsTheThumbInsteadOfPasting) {
    for (int i = 0; i < 20; ++i)
        add("entry " + std::to_string(i));
    settle();
    QTest::mouseMove(list().viewport(), QPoint(344, 10));
    QTest::mousePress(list().viewport(), Qt::LeftButton, {}, QPoint(344, 10));
    QMouseEvent drag(QEvent::MouseMove, QPointF(344, 400), QPointF(344, 400), Qt::LeftButton, Qt::LeftButton, {});
    QApplication::sendEvent(list().viewport(), &drag);
    QTest::mouseRelease(list().viewport(), Qt::LeftButton, {}, QPoint(344, 360));
    EXPECT_EQ(list().verticalScrollBar()->value(), list().verticalScrollBar()->maximum());
    EXPECT_THAT(sim.journal.take(), IsEmpty());
}

TEST_F(HistoryViewTest, ShowsTheStateOfARowByItsColour) {
    const auto background = [&](std::size_t row) {
        return list().grab().toImage().pixelColor(list().rowRect(row).topLeft() + QPoint(8, 8));
    };
    const auto named = [](Role role) { return color(role, ColorScheme::dark); };
    QTest::mouseMove(list().viewport(), middleOfRow(1));
    EXPECT_EQ(background(1), named(Role::rowHover));
    EXPECT_EQ(background(0), named(Role::surface));
    QTest::mousePress(list().viewport(), Qt::LeftButton, {}, middleOfRow(1));
    EXPECT_EQ(background(1), named(Role::rowPressed));
    QTest::mouseRelease(list().viewport(), Qt::LeftButton, {}, middleOfRow(0));
    QTest::mouseClick(list().viewport(), Qt::RightButton, {}, middleOfRow(2));
    QTest::mouseMove(list().viewport(), middleOfRow(0));
    EXPECT_EQ(background(2), named(Role::rowHover));
    EXPECT_EQ(background(0), named(Role::surface));
    openMenu()->close();
    list().setFocus(Qt::TabFocusReason);
    EXPECT_EQ(list().grab().toImage().pixelColor(100, 3), named(Role::focusRing));
}

TEST_F(HistoryViewTest, ShowsTheIconOfTheSourceApplicationOrAClipboard) {
    const auto middle = [](const std::optional<SharedText>& application) {
        return appIcon(application, ColorScheme::dark, 2).toImage().pixelColor(5, 20);
    };
    EXPECT_EQ(middle(SharedText("mail")), QColor(0xD97706));
    EXPECT_EQ(middle(SharedText("unheard of")), middle(std::nullopt));
    EXPECT_EQ(appIcon(std::nullopt, ColorScheme::dark, 2).size(), QSize(40, 40));
}

TEST_F(HistoryViewTest, ShowsTheTimeOfDayOnly) {
    EXPECT_EQ(HistoryItemRow::timeText(Date::fromUnixTime(1000000000)), "01:46");
    EXPECT_EQ(HistoryItemRow::timeText(Date::fromUnixTime(1000000000 + 12 * 3600)), "13:46");
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
    const QPoint middle = row->rect().center();
    EXPECT_EQ(rows->childAt(middle.x(), middle.y()), row);
    row->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(sim.clipboard.content()->string(), "second");
}

TEST_F(HistoryViewTest, StaysQuickWithTenThousandEntries) {
    settings.setMaxClipboardItems(10000);
    std::string json;
    for (int i = 0; i < 10000; ++i) {
        json += json.empty() ? "[" : ",";
        json += R"({"id":")" + Uuid::generate().text() + R"(","content":"entry )" + std::to_string(i) +
                R"( some words that make it a line of more than thirty-five","type":"text","date":0,"isPinned":false})";
    }
    sim.store.setData("BrindleHistory", json + "]");
    HistoryManager large{settings};
    ContentView crowded{large, monitor, settings};
    HistoryView& rows = *crowded.findChild<HistoryView*>();
    ASSERT_EQ(rows.filteredItems().size(), 10000U);
    QElapsedTimer watch;
    watch.start();
    large.togglePin(large.history().value()[5000]);
    const auto changed = watch.restart();
    sim.queue.run();
    const auto refreshed = watch.restart();
    crowded.grab();
    const auto painted = watch.restart();
    crowded.state().searchText = std::string("9999");
    sim.queue.run();
    const auto searched = watch.elapsed();
    EXPECT_EQ(rows.filteredItems().size(), 1U);
    RecordProperty("milliseconds", (std::to_string(refreshed) + " refresh, " + std::to_string(painted) + " paint, " +
                                    std::to_string(searched) + " search, " + std::to_string(changed) + " change"));
    EXPECT_LT(refreshed + painted + searched, 500);
}

}  // namespace

}  // namespace brindle::test
