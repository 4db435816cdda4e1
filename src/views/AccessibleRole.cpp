#include "views/AccessibleRole.h"

#include <QAccessibleWidget>
#include <QVariant>
#include <QWidget>

namespace brindle {

namespace {

constexpr const char* roleProperty = "brindleAccessibleRole";

QAccessibleInterface* makeInterface(const QString&, QObject* object) {
    const QVariant role = object->property(roleProperty);
    auto* widget = qobject_cast<QWidget*>(object);
    return widget && role.isValid() ? new QAccessibleWidget(widget, static_cast<QAccessible::Role>(role.toInt()))
                                    : nullptr;
}

}  // namespace

void setAccessible(QWidget& widget, QAccessible::Role role, const QString& name) {
    QAccessible::installFactory(makeInterface);
    // The role first: a new name may have the interface made, which is kept.
    widget.setProperty(roleProperty, static_cast<int>(role));
    widget.setAccessibleName(name);
}

}  // namespace brindle
