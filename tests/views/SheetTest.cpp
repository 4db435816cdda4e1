#include "views/Sheet.h"

#include <QDrag>
#include <QMimeData>
#include <QTemporaryDir>
#include <QTimer>

#include "platform/Workspace.h"
#include "platform/qt/QtText.h"
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
    void showAbout() { show(state().showAbout); }
    void showGuide() { show(state().showAccessibilityDialog); }
    template <typename Button>
    void clickOn(QWidget& sheet, const QString& name) {
        QTest::mouseClick(&named<Button>(sheet, name), Qt::LeftButton);
    }
};

TEST_F(SheetTest, IsOfItsSizeOverThePopoverAndClosesByButtonOrEscape) {
    showAbout();
    EXPECT_EQ(about()->size(), QSize(320, 420));
    clickOn<SymbolButton>(*about(), "Close");
    EXPECT_FALSE(state().showAbout.value());
    settle();
    EXPECT_EQ(about(), nullptr);
    EXPECT_TRUE(view.isVisible());
    showAbout();
    QTest::keyClick(&named<PushButton>(*about(), "Learn More"), Qt::Key_Escape);
    EXPECT_FALSE(state().showAbout.value());
    settle();
    for (int i = 0; i < 2; ++i) {
        showGuide();
        ASSERT_NE(guide(), nullptr);
        EXPECT_EQ(guide()->size(), QSize(480, 600));
        QTest::keyClick(guide(), Qt::Key_Escape);
        EXPECT_FALSE(state().showAccessibilityDialog.value());
        settle();
    }
}

TEST_F(SheetTest, GoesWithThePopoverAndComesBackWithIt) {
    showAbout();
    view.hide();
    settle();
    EXPECT_TRUE(state().showAbout.value());
    view.show();
    settle();
    EXPECT_NE(about(), nullptr);
    state().showAbout = false;
    settle();
    EXPECT_EQ(about(), nullptr);
}

TEST_F(SheetTest, TellsNameAndVersionAndOpensThePageInDarkAndLight) {
    sim.package.info.clear();
    showAbout();
    EXPECT_EQ(labelsIn(*about()), QStringList({"Brindle", "Version 1.0"}));
    clickOn<PushButton>(*about(), "Learn More");
    EXPECT_THAT(sim.journal.take(), ElementsAre("open https://brindle.example/"));
    EXPECT_EQ(pixel(*about(), {20, 400}), QColor("#1E293B"));
    settings.setAppTheme(AppTheme::light);
    settle();
    EXPECT_EQ(pixel(*about(), {20, 400}), QColor("#F1F5F9"));
}

TEST_F(SheetTest, ShowsTheClipboardSymbolWhereThereIsNoIconFile) {
    const QTemporaryDir folder;
    QFile broken(folder.filePath("AppIcon.icns"));
    ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
    broken.write("icns\0\0\0\x10ic09\0\0\xFF\xFF", 16);
    broken.close();
    const std::pair<std::optional<std::string>, int> folders[] = {
        {std::nullopt, 144}, {"/nowhere", 144}, {toUtf8(folder.path()), 144}, {BRINDLE_RESOURCES, 164}};
    for (const auto& [resources, top] : folders) {
        sim.package.resources = resources;
        showAbout();
        EXPECT_EQ(about()->findChildren<Label*>().front()->y(), top);
        EXPECT_EQ(pixel(*about(), {146, 71}) == accentColor(), top == 144);
        about()->window()->close();
        settle();
    }
}

TEST_F(SheetTest, GuidesInTheseWordsOpensTheSettingsAndThenCloses) {
    const Subscription closing = state().showAccessibilityDialog.subscribe([&](bool isShown) {
        if (!isShown)
            sim.journal.add("closed");
    });
    for (const bool opens : {true, false}) {
        sim.desktop.opensUrls = opens;
        showGuide();
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
}

TEST_F(SheetTest, DragsTheExecutableOrElseTheBundle) {
    const auto dragged = [&] {
        auto& icon = *guide()->findChild<DraggableAppIcon*>();
        QStringList formats;
        const auto look = [&] {
            if (const auto* data = qApp->findChild<QDrag*>(); data && formats.isEmpty())
                formats = data->mimeData()->formats() + QStringList(data->mimeData()->urls().value(0).toString());
        };
        QTimer::singleShot(0, [&] {
            look();
            QDrag::cancel();
        });
        QTest::mousePress(&icon, Qt::LeftButton, {}, QPoint(50, 50));
        drag(icon, {52, 50});
        drag(icon, {90, 50});
        look();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return formats;
    };
    showGuide();
    sim.package.executable = "/opt/with space/self";
    EXPECT_EQ(dragged(), QStringList({"text/uri-list", "file:///opt/with space/self"}));
    sim.package.executable.reset();
    EXPECT_EQ(dragged(), QStringList({"text/uri-list", "file:///opt/self"}));
    sim.package.images.clear();
    EXPECT_EQ(dragged(), QStringList());
    EXPECT_EQ(pixel(*guide(), {240, 369}), color(Role::surface, ColorScheme::dark));
}

}  // namespace

}  // namespace brindle::test
