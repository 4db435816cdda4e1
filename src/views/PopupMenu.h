#pragma once

#include "platform/ColorSchemes.h"

class QMenu;
class QPoint;
class QString;
class QWidget;

namespace brindle {

/// An empty menu at least that many points wide that deletes itself when it closes. A click elsewhere only closes it.
QMenu* newMenu(QWidget* parent, int width);

/// A user's words as a menu's title: no letter of it becomes a shortcut.
QString menuTitle(const QString& words);

/// Gives the filled menu its look and shows it with its top left corner there.
void showMenu(QMenu& menu, ColorScheme scheme, QPoint globalTopLeft);

}  // namespace brindle
