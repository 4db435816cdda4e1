#include "views/TabsAccessible.h"

#include <QAccessibleWidget>

#include "views/TabButton.h"
#include "views/TabsView.h"

namespace brindle {

namespace {

class AccessibleTab final : public QAccessibleWidget {
public:
    explicit AccessibleTab(TabButton& tab) : QAccessibleWidget(&tab, QAccessible::PageTab) {}

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.focusable = true;
        state.selectable = true;
        state.selected = tab().isSelected();
        return state;
    }

    QStringList actionNames() const override { return QStringList(pressAction()) + QAccessibleWidget::actionNames(); }
    void doAction(const QString& name) override {
        if (name == pressAction())
            tab().click();
        else
            QAccessibleWidget::doAction(name);
    }

private:
    TabButton& tab() const { return static_cast<TabButton&>(*widget()); }
};

QAccessibleInterface* makeInterface(const QString&, QObject* object) {
    if (auto* tab = qobject_cast<TabButton*>(object))
        return new AccessibleTab(*tab);
    if (auto* tabs = qobject_cast<TabsView*>(object))
        return new QAccessibleWidget(tabs, QAccessible::PageTabList);
    return nullptr;
}

}  // namespace

void installTabsAccessibility() {
    QAccessible::installFactory(makeInterface);
}

}  // namespace brindle
