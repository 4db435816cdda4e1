// Renders every view of the popover in both appearances at both scales: brindle_render FOLDER

#include <QApplication>
#include <QDir>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QTest>

#include "platform/qt/FramelessWindow.h"
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

QMenu* openMenu() {
    return qobject_cast<QMenu*>(QApplication::activePopupWidget());
}

const std::pair<const char*, void (*)(Stage&)> scenes[] = {
    {"popover", [](Stage&) {}},
    {"popover-scrolled",
     [](Stage& stage) {
         stage.list().verticalScrollBar()->setValue(2000);
         QTest::mouseMove(stage.list().viewport(), QPoint(0, 0));  // it may be there already
         QTest::mouseMove(stage.list().viewport(), stage.list().rowRect(7).center());
     }},
    {"search",
     [](Stage& stage) {
         stage.view.findChild<TextField*>()->setFocus(Qt::MouseFocusReason);
         stage.view.state().searchText = "example";
     }},
    {"empty",
     [](Stage& stage) {
         stage.demo.history.createList("Empty");
         stage.view.state().selectedTab = stage.demo.history.customLists().value().back().id.text();
     }},
    {"first-start",
     [](Stage& stage) {
         for (const auto& item : std::vector(stage.demo.history.history().value()))
             stage.demo.history.deleteItem(item);
         for (const auto& list : std::vector(stage.demo.history.customLists().value()))
             stage.demo.history.deleteList(list);
     }},
    {"row-menu",
     [](Stage& stage) {
         QTest::mousePress(stage.list().viewport(), Qt::RightButton, {}, QPoint(168, 95));
         openMenu()->setActiveAction(openMenu()->actions().back());
     }},
    {"header-menu",
     [](Stage& stage) {
         for (SymbolButton* button : stage.view.findChildren<SymbolButton*>())
             if (button->accessibleName() == "Menu")
                 button->click();
         openMenu()->setActiveAction(openMenu()->actions().front());
     }},
    {"tab-menu",
     [](Stage& stage) {
         QTest::mousePress(stage.view.findChildren<TabButton*>()[2], Qt::RightButton, {}, QPoint(34, 20));
     }},
    {"settings",
     [](Stage& stage) {
         stage.demo.settings.setLaunchAtLogin(true);
         stage.view.state().showSettings = true;
     }},
    {"dialog-new", [](Stage& stage) { stage.view.state().showNewListAlert = true; }},
    {"dialog-rename",
     [](Stage& stage) {
         stage.view.state().renameListName = "Work";
         stage.view.state().showRenameListAlert = true;
     }},
    {"dialog-delete", [](Stage& stage) { stage.view.state().showDeleteListAlert = true; }},
    {"about", [](Stage& stage) { stage.view.state().showAbout = true; }},
    {"guide", [](Stage& stage) { stage.view.state().showAccessibilityDialog = true; }},
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

QImage render(void (*play)(Stage&), AppTheme theme, int scale) {
    Stage stage(theme);
    play(stage);
    stage.settle();
    std::vector<QWidget*> shown{&frontWindow(stage)};
    QRect area = frontWindow(stage).contentFrame();
    for (QWidget* other : QApplication::topLevelWidgets()) {
        if (!qobject_cast<QMenu*>(other) || !other->isVisible())
            continue;
        shown.push_back(other);
        area |= other->geometry();
    }
    QImage image(area.size() * scale, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    for (QWidget* each : shown)
        each->render(&painter, each->pos() - area.topLeft(), {}, QWidget::DrawChildren);
    return image;
}

}  // namespace

}  // namespace brindle::test

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("TZ", "UTC");
    qputenv("LC_ALL", "en_GB.UTF-8");
    const QApplication application(argc, argv);
    const QDir folder(application.arguments().value(1));
    bool isSaved = true;
    for (const auto& [name, play] : brindle::test::scenes) {
        for (const auto theme : {brindle::AppTheme::dark, brindle::AppTheme::light}) {
            for (const int scale : {1, 2}) {
                const char* scheme = theme == brindle::AppTheme::dark ? "dark" : "light";
                const auto file = QStringLiteral("%1-%2@%3x.png").arg(name, scheme).arg(scale);
                isSaved = brindle::test::render(play, theme, scale).save(folder.filePath(file)) && isSaved;
            }
        }
    }
    return isSaved ? 0 : 1;
}
