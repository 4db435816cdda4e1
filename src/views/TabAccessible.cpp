#include "views/TabAccessible.h"

#include <QAccessibleWidget>

#include "views/TabButton.h"

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
    auto* tab = qobject_cast<TabButton*>(object);
    return tab ? new AccessibleTab(*tab) : nullptr;
}

}  // namespace

void installTabAccessibility() {
    QAccessible::installFactory(makeInterface);
}

}  // namespace brindle
