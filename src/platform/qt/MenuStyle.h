#pragma once

#include "platform/ColorSchemes.h"

class QAction;
class QMenu;

namespace brindle {

enum class MenuCorners { square, round };

/// Gives a menu and the submenus it has by then the program's look. Call it after the menu is filled, before it is
/// shown. The corners are round when the menu's parent is in a window that can have them.
void styleMenu(QMenu& menu, ColorScheme scheme);
/// The same for a menu that belongs to no window. Round corners need a desktop that blends windows.
void styleMenu(QMenu& menu, ColorScheme scheme, MenuCorners corners);

/// Shows the item as one that destroys something.
void markDestructive(QAction& action);

}  // namespace brindle
