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

void setAccessibleRole(QWidget& widget, QAccessible::Role role) {
    QAccessible::installFactory(makeInterface);
    widget.setProperty(roleProperty, static_cast<int>(role));
}

}  // namespace brindle
