#include <QMenu>

#include "platform/qt/QtText.h"
#include "services/HistoryManager.h"
#include "views/HistoryItemRow.h"
#include "views/PopupMenu.h"

namespace brindle {

namespace {

constexpr int menuWidth = 150;
constexpr int submenuWidth = 116;

}  // namespace

QMenu* HistoryItemRow::makeMenu(QWidget* parent) const {
    QMenu* menu = newMenu(parent, menuWidth);
    menu->addAction(QStringLiteral("Copy"), menu, [row = *this] { row.copyItem(); });
    menu->addAction(QStringLiteral("Delete"), menu, [row = *this] { row.deleteItem(); });
    menu->addAction(item_.isPinned ? QStringLiteral("Unpin") : QStringLiteral("Pin"), menu,
                    [row = *this] { row.togglePin(); });
    QMenu* lists = newMenu(menu, submenuWidth);
    lists->setAttribute(Qt::WA_DeleteOnClose, false);
    lists->setTitle(QStringLiteral("Add to List"));
    menu->addMenu(lists);
    for (const CustomList& list : historyManager_.customLists().value())
        lists->addAction(menuTitle(toQString(list.name)), menu, [row = *this, id = list.id] { row.moveItem(id); });
    lists->menuAction()->setEnabled(!lists->isEmpty());
    return menu;
}

}  // namespace brindle
