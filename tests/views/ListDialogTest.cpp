#include "views/ListDialog.h"

#include "views/ViewTest.h"

namespace brindle::test {

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

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
};

TEST_F(ListDialogTest, RenamesWhatIsSelectedWhenItOpensUnlessTheListIsGone) {
    askForRename();
    EXPECT_EQ(labelsIn(*dialog()), QStringList("Rename List"));
    EXPECT_EQ(field()->selectedText(), "Work");
    QTest::keyClicks(field(), "Play");
    EXPECT_EQ(state().renameListName.value(), "Play");
    press(Qt::Key_Enter);
    EXPECT_THAT(names(), ElementsAre("Play"));
    askForRename();
    history.deleteList(work());
    settle();
    QTest::keyClicks(field(), "Ghost");
    press(Qt::Key_Return);
    EXPECT_THAT(names(), IsEmpty());
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
    EXPECT_EQ(
        labelsIn(*dialog()),
        QStringList({"Delete List", "Are you sure you want to delete this list? All items in it will be deleted."}));
    press(Qt::Key_Tab);
    press(Qt::Key_Return);
    EXPECT_THAT(names(), IsEmpty());
    EXPECT_EQ(state().selectedTab.value(), "All");
    EXPECT_EQ(history.history().value().size(), 3U);
}

TEST_F(ListDialogTest, KeepsTheKeyboardAndThePointerToItself) {
    QTest::mouseClick(&searchField(), Qt::LeftButton);
    askForNew();
    EXPECT_EQ(tabStops(4), QStringList({"Cancel", "Create", "List Name", "Cancel"}));
    for (const auto key : {Qt::Key_Right, Qt::Key_Down}) {
        press(key);
        EXPECT_TRUE(button("Create").hasFocus());
    }
    EXPECT_EQ(view.childAt(100, 120), dialog());
    press(Qt::Key_Escape);
    EXPECT_TRUE(searchField().hasFocus());
}

}  // namespace

}  // namespace brindle::test
