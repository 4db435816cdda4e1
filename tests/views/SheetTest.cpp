#include "views/Sheet.h"

#include <QDrag>
#include <QMimeData>
#include <QTemporaryDir>
#include <QTimer>

#include "platform/Workspace.h"
#include "platform/qt/QtText.h"
#include "views/AboutView.h"
#include "views/AccessibilityPermissionDialog.h"
#include "views/Palette.h"
#include "views/ViewTest.h"

namespace brindle::test {

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;

template <typename View>
View* shown() {
    for (QWidget* widget : QApplication::allWidgets()) {
        auto* found = qobject_cast<View*>(widget);
        if (found && found->isVisible())
            return found;
    }
    return nullptr;
}

template <typename Button>
Button& button(QWidget& in, const QString& name) {
    for (Button* each : in.findChildren<Button*>()) {
        if (each->accessibleName() == name)
            return *each;
    }
    throw std::logic_error("no such button");
}

class SheetTest : public ViewTest {
protected:
    AboutView* about() { return shown<AboutView>(); }
    AccessibilityPermissionDialog* guide() { return shown<AccessibilityPermissionDialog>(); }
    void showAbout() {
        view.state().showAbout = true;
        settle();
    }
    void showGuide() {
        view.state().showAccessibilityDialog = true;
        settle();
    }
};

TEST_F(SheetTest, IsOfItsSizeOverThePopoverAndClosesByItsButton) {
    showAbout();
    ASSERT_NE(about(), nullptr);
    EXPECT_EQ(about()->size(), QSize(320, 420));
    EXPECT_TRUE(view.isVisible());
    QTest::mouseClick(&button<SymbolButton>(*about(), "Close"), Qt::LeftButton);
    EXPECT_FALSE(view.state().showAbout.value());
    settle();
    EXPECT_EQ(about(), nullptr);
    EXPECT_TRUE(view.isVisible());
}

TEST_F(SheetTest, ClosesByEscapeWhereverTheKeyboardIs) {
    showAbout();
    QTest::keyClick(&button<PushButton>(*about(), "Learn More"), Qt::Key_Escape);
    EXPECT_FALSE(view.state().showAbout.value());
    settle();
    showGuide();
    ASSERT_NE(guide(), nullptr);
    EXPECT_EQ(guide()->size(), QSize(480, 600));
    QTest::keyClick(guide(), Qt::Key_Escape);
    EXPECT_FALSE(view.state().showAccessibilityDialog.value());
    settle();
    showGuide();
    EXPECT_NE(guide(), nullptr);
}

TEST_F(SheetTest, GoesWithThePopoverAndComesBackWithIt) {
    showAbout();
    view.hide();
    settle();
    EXPECT_TRUE(view.state().showAbout.value());
    view.show();
    settle();
    EXPECT_NE(about(), nullptr);
    view.state().showAbout = false;
    settle();
    EXPECT_EQ(about(), nullptr);
}

TEST_F(SheetTest, TellsNameAndVersionAndOpensThePage) {
    sim.package.info.clear();
    showAbout();
    QStringList texts;
    for (const Label* label : about()->findChildren<Label*>())
        texts += label->text();
    EXPECT_EQ(texts, QStringList({"Brindle", "Version 1.0"}));
    QTest::mouseClick(&button<PushButton>(*about(), "Learn More"), Qt::LeftButton);
    EXPECT_THAT(sim.journal.take(), ElementsAre("open https://brindle.example/"));
}

TEST_F(SheetTest, IsDarkOrLightByTheSetting) {
    showAbout();
    const auto surface = [&] { return about()->grab().toImage().pixelColor(20, 400); };
    EXPECT_EQ(surface(), QColor("#1E293B"));
    settings.setAppTheme(AppTheme::light);
    settle();
    EXPECT_EQ(surface(), QColor("#F1F5F9"));
}

TEST_F(SheetTest, ShowsTheClipboardSymbolWhereThereIsNoIconFile) {
    const auto iconPixel = [&] { return about()->grab().toImage().pixelColor(146, 71); };
    const auto nameTop = [&] { return about()->findChildren<Label*>().front()->y(); };
    const QTemporaryDir folder;
    QFile broken(folder.filePath("AppIcon.icns"));
    ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
    broken.write("icns\0\0\0\x10ic09\0\0\xFF\xFF", 16);
    broken.close();
    const std::optional<std::string> folders[] = {std::nullopt, "/nowhere", toUtf8(folder.path())};
    for (const auto& resources : folders) {
        sim.package.resources = resources;
        showAbout();
        EXPECT_EQ(nameTop(), 144);
        EXPECT_EQ(iconPixel(), accentColor());
        about()->window()->close();
        settle();
    }
    sim.package.resources = BRINDLE_RESOURCES;
    showAbout();
    EXPECT_EQ(nameTop(), 164);
}

TEST_F(SheetTest, OpensTheSettingsAndThenCloses) {
    const Subscription closing = view.state().showAccessibilityDialog.subscribe([&](bool isShown) {
        if (!isShown)
            sim.journal.add("closed");
    });
    for (const bool opens : {true, false}) {
        sim.desktop.opensUrls = opens;
        showGuide();
        QTest::mouseClick(&button<PushButton>(*guide(), "Done"), Qt::LeftButton);
        EXPECT_THAT(sim.journal.take(), ElementsAre("open " + std::string(accessibilitySettingsUrl), "closed"));
        settle();
        EXPECT_EQ(guide(), nullptr);
    }
}

TEST_F(SheetTest, GuidesInTheseWords) {
    showGuide();
    QStringList texts;
    for (const Label* label : guide()->findChildren<Label*>())
        texts += label->text();
    EXPECT_EQ(texts, QStringList({"Next Action",
                                  "After unlocking the Privacy & Security, drag the logo of Brindle below to the list "
                                  "of \"Allow the apps below to control your computer\" on right side of "
                                  "\"Accessibility\".",
                                  "👇"}));
}

TEST_F(SheetTest, DragsTheExecutableOrElseTheBundle) {
    const auto dragged = [&] {
        auto* icon = guide()->findChild<DraggableAppIcon*>();
        const auto send = [&](QEvent::Type type, QPoint place, Qt::MouseButton button) {
            QMouseEvent event(type, place, icon->mapToGlobal(place), button, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(icon, &event);
        };
        QStringList formats;
        QTimer::singleShot(0, [&] {
            if (const auto* drag = qApp->findChild<QDrag*>())
                formats = drag->mimeData()->formats() + QStringList(drag->mimeData()->urls().value(0).toString());
            QDrag::cancel();
        });
        send(QEvent::MouseButtonPress, QPoint(50, 50), Qt::LeftButton);
        send(QEvent::MouseMove, QPoint(52, 50), Qt::NoButton);
        send(QEvent::MouseMove, QPoint(90, 50), Qt::NoButton);
        if (const auto* drag = qApp->findChild<QDrag*>(); drag && formats.isEmpty())
            formats = drag->mimeData()->formats() + QStringList(drag->mimeData()->urls().value(0).toString());
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
    EXPECT_EQ(guide()->grab().toImage().pixelColor(240, 369), color(Role::surface, ColorScheme::dark));
}

}  // namespace

}  // namespace brindle::test
