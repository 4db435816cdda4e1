#include "views/Sheet.h"

#include "platform/Workspace.h"
#include "views/AboutView.h"
#include "views/AccessibilityPermissionDialog.h"
#include "views/ViewTest.h"

namespace brindle::test {

namespace {

using ::testing::ElementsAre;

class SheetTest : public ViewTest {
protected:
    template <typename View>
    static View* shown() {
        for (QWidget* widget : QApplication::allWidgets()) {
            auto* found = qobject_cast<View*>(widget);
            if (found && found->isVisible())
                return found;
        }
        return nullptr;
    }
    AboutView* about() { return shown<AboutView>(); }
    AccessibilityPermissionDialog* guide() { return shown<AccessibilityPermissionDialog>(); }
    void show(Published<bool>& flag) {
        flag = true;
        settle();
    }
    template <typename Button>
    void clickOn(QWidget& sheet, const QString& name) {
        QTest::mouseClick(&named<Button>(sheet, name), Qt::LeftButton);
    }
};

TEST_F(SheetTest, TellsNameAndVersionAndGoesAndComesWithThePopoverUntilItIsClosed) {
    sim.package.resources.reset();
    show(state().showAbout);
    EXPECT_EQ(labelsIn(*about()), QStringList({"Brindle", "Version 1.0"}));
    clickOn<PushButton>(*about(), "Learn More");
    EXPECT_THAT(sim.journal.take(), ElementsAre("open https://brindle.example/"));
    view.hide();
    settle();
    view.show();
    settle();
    ASSERT_NE(about(), nullptr);
    clickOn<SymbolButton>(*about(), "Close");
    EXPECT_FALSE(state().showAbout.value());
    settle();
    EXPECT_EQ(about(), nullptr);
    show(state().showAbout);
    QTest::keyClick(&named<PushButton>(*about(), "Learn More"), Qt::Key_Escape);
    EXPECT_FALSE(state().showAbout.value());
}

TEST_F(SheetTest, GuidesInTheseWordsOpensTheSettingsAndThenCloses) {
    const Subscription closing = state().showAccessibilityDialog.subscribe([&](bool isShown) {
        if (!isShown)
            sim.journal.add("closed");
    });
    show(state().showAccessibilityDialog);
    EXPECT_EQ(labelsIn(*guide()),
              QStringList({"Next Action",
                           "After unlocking the Privacy & Security, drag the logo of Brindle below to the list "
                           "of \"Allow the apps below to control your computer\" on right side of "
                           "\"Accessibility\".",
                           "👇"}));
    clickOn<PushButton>(*guide(), "Done");
    EXPECT_THAT(sim.journal.take(), ElementsAre("open " + std::string(accessibilitySettingsUrl), "closed"));
    settle();
    EXPECT_EQ(guide(), nullptr);
}

}  // namespace

}  // namespace brindle::test
