#pragma once

#include <gmock/gmock.h>

#include <QApplication>
#include <QMenu>
#include <QTest>

#include "services/FocusDelegate.h"
#include "views/ContentView.h"
#include "views/HistoryView.h"
#include "views/TextField.h"
#include "views/render/DemoHistory.h"

namespace brindle::test {

/// The delegate's role, noting only that the popover was closed.
class NotingDelegate final : public FocusDelegate {
public:
    explicit NotingDelegate(Journal& journal) : journal_(journal) {}

    [[nodiscard]] const RunningApplicationHandle& previousApp() const override { return none_; }
    void setPreviousApp(RunningApplicationHandle) override {}
    [[nodiscard]] const RunningApplicationHandle& lastAppFocus() const override { return none_; }
    void setLastAppFocus(RunningApplicationHandle) override {}
    [[nodiscard]] bool isPopoverShown() const override { return true; }
    void performClosePopover() override {}
    void closePopover() override { journal_.add("close popover"); }
    void removeGlobalMouseUpMonitor() override {}
    void activatePreviousApp() override {}

private:
    Journal& journal_;
    RunningApplicationHandle none_;
};

/// The main view on a simulated desktop, with three entries: "third" is the newest.
class ViewTest : public ::testing::Test {
protected:
    ViewTest() {
        installDemoImages(sim);
        sim.self.setDelegate(&delegate);
        for (const char* text : {"first", "second", "third"})
            add(text);
        view.show();
        QApplication::setActiveWindow(&view);
        settle();
    }
    ~ViewTest() override { sim.self.setDelegate(nullptr); }

    ClipboardItem add(const std::string& text) {
        ClipboardItem item;
        item.id = Uuid::generate();
        item.content = text;
        history.addItem(item);
        return item;
    }

    /// Lets the coalesced redraw happen; the journal is empty then.
    void settle() {
        sim.queue.run();
        sim.journal.take();
    }

    HistoryView& list() { return *view.findChild<HistoryView*>(); }
    TextField& searchField() { return *view.findChild<TextField*>(); }
    static QMenu* openMenu() { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); }

    std::vector<std::string> shownTexts() {
        std::vector<std::string> texts;
        for (const ClipboardItem& item : list().filteredItems())
            texts.push_back(item.content.string());
        return texts;
    }
    QPoint middleOfRow(std::size_t row) { return list().rowRect(row).center(); }
    void click(std::size_t row) { QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, middleOfRow(row)); }

    /// Opens the row's menu and chooses from it, or from its submenu.
    void choose(std::size_t row, const QString& title) {
        QTest::mouseClick(list().viewport(), Qt::RightButton, {}, middleOfRow(row));
        QMenu* menu = openMenu();
        ASSERT_NE(menu, nullptr);
        for (QAction* action : menu->actions() + menu->actions().back()->menu()->actions()) {
            if (action->text() == title)
                action->trigger();
        }
        menu->close();
    }

    SimulatedPlatform sim;
    NotingDelegate delegate{sim.journal};
    SettingsManager settings;
    HistoryManager history{settings};
    ClipboardMonitor monitor{history};
    ContentView view{history, monitor, settings};
};

}  // namespace brindle::test
