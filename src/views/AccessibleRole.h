#pragma once

#include <QAccessible>

class QWidget;

namespace brindle {

/// Tells assistive technology what a widget of our own painting is.
void setAccessibleRole(QWidget& widget, QAccessible::Role role);

}  // namespace brindle
