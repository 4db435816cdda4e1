#include "views/PopupMenu.h"

#include <QMenu>

#include "platform/qt/MenuStyle.h"
#include "views/Fonts.h"

namespace brindle {

QMenu* newMenu(QWidget* parent, int width) {
    auto* menu = new QMenu(parent);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setAttribute(Qt::WA_NoMouseReplay);
    menu->setMinimumWidth(width);
    menu->setFont(textFont(TextStyle::body));
    return menu;
}

QString menuTitle(const QString& words) {
    QString title = words;
    return title.replace(u'&', QStringLiteral("&&"));
}

void showMenu(QMenu& menu, ColorScheme scheme, QPoint globalTopLeft) {
    styleMenu(menu, scheme);
    menu.popup(globalTopLeft);
}

}  // namespace brindle
