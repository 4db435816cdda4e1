#pragma once

#include <QAccessible>

class QString;
class QWidget;

namespace brindle {

/// Tells assistive technology what a widget of our own painting is and what it is called.
void setAccessible(QWidget& widget, QAccessible::Role role, const QString& name);

}  // namespace brindle
