// Renders every view of the popover in both appearances at both scales: brindle_render FOLDER [NAME...]

#include <QApplication>
#include <QDir>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QTest>
#include <functional>
#include <iostream>

#include "platform/qt/FramelessWindow.h"
#include "views/AboutView.h"
#include "views/AccessibilityPermissionDialog.h"
#include "views/ContentView.h"
#include "views/HistoryView.h"
#include "views/SymbolButton.h"
#include "views/TabButton.h"
#include "views/TextField.h"
#include "views/render/DemoHistory.h"

namespace brindle::test {

namespace {

/// One popover to play with.
struct Stage {
    explicit Stage(AppTheme theme) {
        demo.settings.setAppTheme(theme);
        demo.sim.queue.run();
        window.setContentSize(ContentView::fixedSize);
        window.setColorScheme(view.effectiveScheme());
        window.setContent(view);
        window.show();
        QApplication::setActiveWindow(&window);
    }

    void settle() {
        demo.sim.queue.run();
        QApplication::sendPostedEvents();
    }
    HistoryView& list() { return *view.findChild<HistoryView*>(); }

    DemoHistory demo;
    WindowSystem windowSystem;
    FramelessWindow window{windowSystem};
    ContentView view{demo.history, demo.monitor, demo.settings};
};

struct Scene {
    const char* name;
    QSize size;
    std::function<void(Stage&)> play;
};

QMenu* openMenu() {
    return qobject_cast<QMenu*>(QApplication::activePopupWidget());
}

const Scene scenes[] = {
    {"popover", ContentView::fixedSize, [](Stage&) {}},
    {"popover-scrolled", ContentView::fixedSize,
     [](Stage& stage) {
         stage.list().verticalScrollBar()->setValue(2000);
         QTest::mouseMove(stage.list().viewport(), QPoint(0, 0));  // it may be there already
         QTest::mouseMove(stage.list().viewport(), stage.list().rowRect(7).center());
     }},
    {"search", ContentView::fixedSize,
     [](Stage& stage) {
         stage.view.findChild<TextField*>()->setFocus(Qt::MouseFocusReason);
         stage.view.state().searchText = "example";
     }},
    {"empty", ContentView::fixedSize,
     [](Stage& stage) {
         stage.demo.history.createList("Empty");
         stage.view.state().selectedTab = stage.demo.history.customLists().value().back().id.text();
     }},
    {"first-start", ContentView::fixedSize,
     [](Stage& stage) {
         while (!stage.demo.history.history().value().empty())
             stage.demo.history.deleteItem(ClipboardItem(stage.demo.history.history().value().front()));
         while (!stage.demo.history.customLists().value().empty())
             stage.demo.history.deleteList(CustomList(stage.demo.history.customLists().value().front()));
     }},
    {"row-menu",
     {444, 500},
     [](Stage& stage) {
         QTest::mousePress(stage.list().viewport(), Qt::RightButton, {}, QPoint(168, 95));
         openMenu()->setActiveAction(openMenu()->actions().back());
     }},
    {"header-menu", ContentView::fixedSize,
     [](Stage& stage) {
         for (SymbolButton* button : stage.view.findChildren<SymbolButton*>())
             if (button->accessibleName() == "Menu")
                 button->click();
         openMenu()->setActiveAction(openMenu()->actions().front());
     }},
    {"tab-menu", ContentView::fixedSize,
     [](Stage& stage) {
         QTest::mousePress(stage.view.findChildren<TabButton*>()[2], Qt::RightButton, {}, QPoint(34, 20));
     }},
    {"settings", ContentView::fixedSize,
     [](Stage& stage) {
         stage.demo.settings.setLaunchAtLogin(true);
         stage.view.state().showSettings = true;
     }},
    {"dialog-new", ContentView::fixedSize, [](Stage& stage) { stage.view.state().showNewListAlert = true; }},
    {"dialog-rename", ContentView::fixedSize,
     [](Stage& stage) {
         stage.view.state().renameListName = "Work";
         stage.view.state().showRenameListAlert = true;
     }},
    {"dialog-delete", ContentView::fixedSize, [](Stage& stage) { stage.view.state().showDeleteListAlert = true; }},
    {"about", AboutView::fixedSize, [](Stage& stage) { stage.view.state().showAbout = true; }},
    {"guide", AccessibilityPermissionDialog::fixedSize,
     [](Stage& stage) { stage.view.state().showAccessibilityDialog = true; }},
};

/// The sheet that is open, else the popover.
FramelessWindow& frontWindow(Stage& stage) {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        auto* sheet = qobject_cast<FramelessWindow*>(window);
        if (sheet && sheet != &stage.window && sheet->isVisible())
            return *sheet;
    }
    return stage.window;
}

QImage render(const Scene& scene, AppTheme theme, int scale) {
    QImage image(scene.size * scale, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);
    Stage stage(theme);
    scene.play(stage);
    stage.settle();
    QPainter painter(&image);
    FramelessWindow& window = frontWindow(stage);
    const QPoint corner = window.contentFrame().topLeft();
    window.render(&painter, window.pos() - corner, {}, QWidget::DrawChildren);
    for (QWidget* other : QApplication::topLevelWidgets()) {
        if (auto* menu = qobject_cast<QMenu*>(other); menu && menu->isVisible())
            menu->render(&painter, menu->pos() - corner);
    }
    return image;
}

}  // namespace

}  // namespace brindle::test

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("TZ", "UTC");
    qputenv("LC_ALL", "en_GB.UTF-8");
    const QApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.size() < 2) {
        std::cerr << "usage: brindle_render FOLDER [NAME...]\n";
        return 2;
    }
    const QDir folder(arguments[1]);
    folder.mkpath(QStringLiteral("."));
    bool isSaved = true;
    for (const auto& scene : brindle::test::scenes) {
        if (arguments.size() > 2 && !arguments.mid(2).contains(QString::fromUtf8(scene.name)))
            continue;
        for (const auto theme : {brindle::AppTheme::dark, brindle::AppTheme::light}) {
            for (const int scale : {1, 2}) {
                const QString name =
                    QStringLiteral("%1-%2@%3x.png")
                        .arg(QString::fromUtf8(scene.name), theme == brindle::AppTheme::dark ? "dark" : "light",
                             QString::number(scale));
                isSaved = render(scene, theme, scale).save(folder.filePath(name)) && isSaved;
            }
        }
    }
    return isSaved ? 0 : 1;
}
