#include "views/ListDialog.h"

#include <QAccessible>

#include "platform/qt/QtText.h"
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
    PushButton& button(const QString& title) {
        for (PushButton* each : dialog()->findChildren<PushButton*>()) {
            if (each->text() == title)
                return *each;
        }
        throw std::logic_error("no such button");
    }
    void askForNew() {
        view.state().newListName = std::string();
        view.state().showNewListAlert = true;
        settle();
    }
    void askForRename(const CustomList& list) {
        view.state().listToRename = list;
        view.state().renameListName = list.name;
        view.state().showRenameListAlert = true;
        settle();
    }
    void askForDelete(std::optional<CustomList> list) {
        view.state().listToDelete = std::move(list);
        view.state().showDeleteListAlert = true;
        settle();
    }
    void press(Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); }
    std::vector<std::string> names() {
        std::vector<std::string> all;
        for (const CustomList& list : history.customLists().value())
            all.push_back(list.name);
        return all;
    }
    QStringList texts() {
        QStringList all(dialog()->accessibleName());
        for (const Label* label : dialog()->findChildren<Label*>())
            all += label->text();
        for (const TextField* each : dialog()->findChildren<TextField*>())
            all += each->placeholderText();
        for (const PushButton* each : dialog()->findChildren<PushButton*>())
            all += each->text();
        return all;
    }
};

TEST_F(ListDialogTest, AsksInTheseWords) {
    askForNew();
    EXPECT_EQ(texts(), QStringList({"New List", "New List", "List Name", "Cancel", "Create"}));
    press(Qt::Key_Escape);
    settle();
    EXPECT_EQ(dialog(), nullptr);
    askForRename(work());
    EXPECT_EQ(texts(), QStringList({"Rename List", "Rename List", "List Name", "Cancel", "Rename"}));
    press(Qt::Key_Escape);
    settle();
    askForDelete(work());
    EXPECT_EQ(texts(), QStringList({"Delete List", "Delete List",
                                    "Are you sure you want to delete this list? All items in it will be deleted.",
                                    "Cancel", "Delete"}));
    EXPECT_EQ(QAccessible::queryAccessibleInterface(dialog())->role(), QAccessible::Dialog);
}

TEST_F(ListDialogTest, CreatesOnceByReturnOrClickAndLeavesTheSelection) {
    askForNew();
    EXPECT_TRUE(field()->hasFocus());
    QTest::keyClicks(field(), "  a b ");
    for (int i = 0; i < 3; ++i)
        press(Qt::Key_Return);
    EXPECT_FALSE(view.state().showNewListAlert.value());
    settle();
    EXPECT_EQ(dialog(), nullptr);
    askForNew();
    QTest::keyClicks(field(), "Work");
    QTest::mouseClick(&button("Create"), Qt::LeftButton);
    settle();
    EXPECT_THAT(names(), ElementsAre("Work", "  a b ", "Work"));
    EXPECT_EQ(view.state().selectedTab.value(), "All");
}

TEST_F(ListDialogTest, RenamesWhatIsSelectedWhenItOpens) {
    askForRename(work());
    EXPECT_EQ(field()->selectedText(), "Work");
    QTest::keyClicks(field(), "Play");
    EXPECT_EQ(view.state().renameListName.value(), "Play");
    press(Qt::Key_Enter);
    EXPECT_THAT(names(), ElementsAre("Play"));
}

TEST_F(ListDialogTest, ChangesNothingForAnEmptyNameOrCancel) {
    askForNew();
    press(Qt::Key_Return);
    settle();
    EXPECT_EQ(dialog(), nullptr);
    askForRename(work());
    press(Qt::Key_Delete);
    QTest::mouseClick(&button("Rename"), Qt::LeftButton);
    settle();
    askForRename(work());
    QTest::keyClicks(field(), "Other");
    QTest::mouseClick(&button("Cancel"), Qt::LeftButton);
    settle();
    askForDelete(work());
    EXPECT_TRUE(button("Cancel").hasFocus());
    press(Qt::Key_Return);
    settle();
    EXPECT_EQ(dialog(), nullptr);
    EXPECT_THAT(names(), ElementsAre("Work"));
}

TEST_F(ListDialogTest, DeletesTheListNotItsEntriesAndClosesThePopover) {
    history.createList("Play");
    view.state().selectedTab = work().id.text();
    askForDelete(history.customLists().value()[1]);
    QTest::mouseClick(&button("Delete"), Qt::LeftButton);
    EXPECT_THAT(sim.journal.take(), Contains("close popover"));
    EXPECT_EQ(view.state().selectedTab.value(), work().id.text());
    settle();
    askForDelete(work());
    press(Qt::Key_Tab);
    press(Qt::Key_Return);
    EXPECT_THAT(names(), IsEmpty());
    EXPECT_EQ(view.state().selectedTab.value(), "All");
    EXPECT_EQ(history.history().value().size(), 3U);
}

TEST_F(ListDialogTest, IsHarmlessForAListThatIsGoneAndWithoutADelegate) {
    const CustomList gone = work();
    askForRename(gone);
    history.deleteList(gone);
    settle();
    QTest::keyClicks(field(), "Ghost");
    press(Qt::Key_Return);
    settle();
    EXPECT_THAT(names(), IsEmpty());
    askForDelete(std::nullopt);
    QTest::mouseClick(&button("Delete"), Qt::LeftButton);
    EXPECT_THAT(sim.journal.take(), Not(Contains("close popover")));
    settle();
    history.createList("Last");
    sim.self.setDelegate(nullptr);
    askForDelete(work());
    QTest::mouseClick(&button("Delete"), Qt::LeftButton);
    settle();
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(ListDialogTest, KeepsTheKeyboardAndThePointerToItself) {
    QTest::mouseClick(&searchField(), Qt::LeftButton);
    askForNew();
    QStringList stops;
    for (int i = 0; i < 4; ++i) {
        press(Qt::Key_Tab);
        stops += QApplication::focusWidget()->accessibleName();
    }
    EXPECT_EQ(stops, QStringList({"Cancel", "Create", "List Name", "Cancel"}));
    press(Qt::Key_Right);
    EXPECT_TRUE(button("Create").hasFocus());
    press(Qt::Key_Down);
    EXPECT_TRUE(button("Create").hasFocus());
    EXPECT_EQ(view.childAt(100, 120), dialog());
    EXPECT_EQ(dialog()->geometry(), view.rect());
    press(Qt::Key_Escape);
    settle();
    EXPECT_TRUE(searchField().hasFocus());
}

TEST_F(ListDialogTest, IsStillOpenWhenThePopoverComesBack) {
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
