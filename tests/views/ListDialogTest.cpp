#include "views/ListDialog.h"

#include <QAccessible>

#include "views/TabButton.h"
#include "views/ViewTest.h"

namespace brindle::test {

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

class ListDialogTest : public ViewTest {
protected:
    ListDialogTest() {
        history.createList("Work");
        settle();
    }

    const CustomList& work() { return history.customLists().value().front(); }
    ListDialog* dialog() { return view.findChild<ListDialog*>(); }
    TextField* field() { return dialog()->findChild<TextField*>(); }
    PushButton& button(const QString& title) { return named<PushButton>(*dialog(), title); }
    void clickOn(const QString& title) {
        QTest::mouseClick(&button(title), Qt::LeftButton);
        settle();
        EXPECT_EQ(dialog(), nullptr);
    }
    void askForNew() {
        state().newListName = std::string();
        state().showNewListAlert = true;
        settle();
    }
    void askForRename() {
        state().listToRename = work();
        state().renameListName = work().name;
        state().showRenameListAlert = true;
        settle();
    }
    void askForDelete(std::optional<CustomList> list) {
        state().listToDelete = std::move(list);
        state().showDeleteListAlert = true;
        settle();
    }
    std::vector<std::string> names() {
        std::vector<std::string> all;
        for (const CustomList& list : history.customLists().value())
            all.push_back(list.name);
        return all;
    }
    /// What the open dialog says; it is left by Escape then.
    QStringList takeTexts() {
        EXPECT_EQ(QAccessible::queryAccessibleInterface(dialog())->role(), QAccessible::Dialog);
        QStringList all = labelsIn(*dialog());
        for (const TextField* each : dialog()->findChildren<TextField*>())
            all += each->placeholderText();
        for (const PushButton* each : dialog()->findChildren<PushButton*>())
            all += each->text();
        press(Qt::Key_Escape);
        EXPECT_EQ(dialog(), nullptr);
        return all;
    }
};

TEST_F(ListDialogTest, AsksInTheseWords) {
    askForNew();
    EXPECT_EQ(takeTexts(), QStringList({"New List", "List Name", "Cancel", "Create"}));
    askForRename();
    EXPECT_EQ(takeTexts(), QStringList({"Rename List", "List Name", "Cancel", "Rename"}));
    askForDelete(work());
    EXPECT_EQ(takeTexts(),
              QStringList({"Delete List", "Are you sure you want to delete this list? All items in it will be deleted.",
                           "Cancel", "Delete"}));
}

TEST_F(ListDialogTest, CreatesOnceByReturnOrClickAndLeavesTheSelection) {
    askForNew();
    EXPECT_TRUE(field()->hasFocus());
    press(Qt::Key_Backtab);
    repeat(Qt::Key_Return);
    press(Qt::Key_Tab);
    repeat(Qt::Key_Return);
    ASSERT_NE(dialog(), nullptr);
    QTest::keyClicks(field(), "  a b ");
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    settle();
    EXPECT_EQ(dialog(), nullptr);
    askForNew();
    QTest::keyClicks(field(), "Work");
    clickOn("Create");
    EXPECT_THAT(names(), ElementsAre("Work", "  a b ", "Work"));
    EXPECT_EQ(state().selectedTab.value(), "All");
}

TEST_F(ListDialogTest, RenamesWhatIsSelectedWhenItOpens) {
    askForRename();
    EXPECT_EQ(field()->selectedText(), "Work");
    QTest::keyClicks(field(), "Play");
    EXPECT_EQ(state().renameListName.value(), "Play");
    press(Qt::Key_Enter);
    EXPECT_THAT(names(), ElementsAre("Play"));
}

TEST_F(ListDialogTest, ChangesNothingForAnEmptyNameOrCancel) {
    askForNew();
    clickOn("Create");
    askForRename();
    press(Qt::Key_Delete);
    clickOn("Rename");
    askForRename();
    QTest::keyClicks(field(), "Other");
    clickOn("Cancel");
    askForDelete(work());
    EXPECT_TRUE(button("Cancel").hasFocus());
    EXPECT_FALSE(button("Cancel").showsFocusRing());
    press(Qt::Key_Return);
    settle();
    view.findChild<TabButton*>()->setFocus(Qt::TabFocusReason);
    askForDelete(work());
    EXPECT_TRUE(button("Cancel").hasFocus() && button("Cancel").showsFocusRing());
    press(Qt::Key_Return);
    settle();
    EXPECT_EQ(dialog(), nullptr);
    EXPECT_THAT(names(), ElementsAre("Work"));
}

TEST_F(ListDialogTest, DeletesTheListNotItsEntriesAndClosesThePopover) {
    history.createList("Play");
    state().selectedTab = work().id.text();
    askForDelete(history.customLists().value()[1]);
    QTest::mouseClick(&button("Delete"), Qt::LeftButton);
    EXPECT_THAT(sim.journal.take(), Contains("close popover"));
    EXPECT_EQ(state().selectedTab.value(), work().id.text());
    settle();
    askForDelete(work());
    press(Qt::Key_Tab);
    press(Qt::Key_Return);
    EXPECT_THAT(names(), IsEmpty());
    EXPECT_EQ(state().selectedTab.value(), "All");
    EXPECT_EQ(history.history().value().size(), 3U);
}

TEST_F(ListDialogTest, IsHarmlessForAListThatIsGoneAndWithoutADelegate) {
    askForRename();
    history.deleteList(work());
    settle();
    QTest::keyClicks(field(), "Ghost");
    press(Qt::Key_Return);
    EXPECT_THAT(names(), IsEmpty());
    askForDelete(std::nullopt);
    QTest::mouseClick(&button("Delete"), Qt::LeftButton);
    EXPECT_THAT(sim.journal.take(), Not(Contains("close popover")));
    settle();
    history.createList("Last");
    sim.self.setDelegate(nullptr);
    askForDelete(work());
    clickOn("Delete");
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(ListDialogTest, HasRoomForItsMessageInAnyFont) {
    askForDelete(work());
    const Label& message = *dialog()->findChildren<Label*>().back();
    EXPECT_EQ(message.height(), message.heightForWidth(message.width()));
    EXPECT_EQ(message.heightForWidth(100000), 16);
    EXPECT_GE(message.heightForWidth(message.width() / 2), 4 * 16);
}

TEST_F(ListDialogTest, KeepsTheKeyboardAndThePointerToItselfAndStaysWhenThePopoverComesBack) {
    QTest::mouseClick(&searchField(), Qt::LeftButton);
    askForNew();
    EXPECT_EQ(tabStops(4), QStringList({"Cancel", "Create", "List Name", "Cancel"}));
    for (const auto key : {Qt::Key_Right, Qt::Key_Down}) {
        press(key);
        EXPECT_TRUE(button("Create").hasFocus());
    }
    EXPECT_EQ(view.childAt(100, 120), dialog());
    EXPECT_EQ(dialog()->geometry(), view.rect());
    press(Qt::Key_Escape);
    EXPECT_TRUE(searchField().hasFocus());
    askForNew();
    QTest::keyClicks(field(), "half");
    view.hide();
    view.show();
    settle();
    ASSERT_NE(dialog(), nullptr);
    EXPECT_EQ(field()->text(), "half");
}

}  // namespace

}  // namespace brindle::test
