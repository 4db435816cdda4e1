#pragma once

#include <gmock/gmock.h>

#include <QApplication>
#include <QMenu>
#include <QTest>

#include "services/FocusDelegate.h"
#include "views/ContentView.h"
#include "views/HistoryView.h"
#include "views/Label.h"
#include "views/Palette.h"
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

    void fill(int count) {
        for (int i = 0; i < count; ++i)
            add("entry " + std::to_string(i));
        settle();
    }
    /// Lets the coalesced redraw happen; the journal is empty then.
    void settle() {
        sim.queue.run();
        sim.journal.take();
    }

    HistoryView& list() { return *view.findChild<HistoryView*>(); }
    TextField& searchField() { return *view.findChild<TextField*>(); }
    ContentState& state() { return view.state(); }
    /// The part of the view, or of a sheet, with this accessible name.
    template <typename Part>
    static Part& named(QWidget& in, const QString& name) {
        for (Part* each : in.findChildren<Part*>()) {
            if (each->accessibleName() == name)
                return *each;
        }
        throw std::logic_error("there is none: " + name.toStdString());
    }
    std::vector<std::string> shownTexts() {
        std::vector<std::string> texts;
        for (const ClipboardItem& item : list().filteredItems())
            texts.push_back(item.content.string());
        return texts;
    }
    static QStringList labelsIn(QWidget& sheet) {
        QStringList texts;
        for (const Label* label : sheet.findChildren<Label*>())
            texts += label->text();
        return texts;
    }
    /// A key for whoever has the keyboard.
    void press(int key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key), modifiers);
        settle();
    }
    /// What a key that stays down sends.
    void repeat(Qt::Key key) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, {}, true);
        QApplication::sendEvent(QApplication::focusWidget(), &event);
        sim.queue.run();
    }
    /// Where the next presses of Tab lead.
    QStringList tabStops(int count) {
        QStringList names;
        for (; count > 0; --count) {
            press(Qt::Key_Tab);
            names += QApplication::focusWidget()->accessibleName();
        }
        return names;
    }

    QPoint middleOfRow(std::size_t row) { return list().rowRect(row).center(); }
    void click(std::size_t row, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseClick(list().viewport(), button, {}, middleOfRow(row));
    }
    static QMenu* openMenu() { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); }
    /// What the open menu and its last submenu offer; the menu is closed then.
    static QList<QAction*> takeMenu() {
        QMenu* menu = openMenu();
        if (!menu)
            return {};
        auto actions = menu->actions();
        if (QMenu* submenu = actions.back()->menu())
            actions += submenu->actions();
        menu->close();
        return actions;
    }
    static QStringList takeMenuTitles() {
        QStringList titles;
        for (const QAction* action : takeMenu())
            titles += action->isSeparator() ? "-" : action->text();
        return titles;
    }
    static void choose(const QString& title) {
        for (QAction* action : takeMenu()) {
            if (action->text() == title)
                action->trigger();
        }
    }

    SimulatedPlatform sim;
    NotingDelegate delegate{sim.journal};
    SettingsManager settings;
    HistoryManager history{settings};
    ClipboardMonitor monitor{history};
    ContentView view{history, monitor, settings};
};

}  // namespace brindle::test
