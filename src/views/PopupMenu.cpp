#include "views/PopupMenu.h"

#include <QFontMetrics>
#include <QMenu>

#include "platform/qt/MenuStyle.h"
#include "views/Fonts.h"
#include "views/OneLine.h"

namespace brindle {

namespace {
constexpr int longestTitle = 240;  // points; the name of a list may be a page long
}

QMenu* newMenu(QWidget* parent, int width) {
    auto* menu = new QMenu(parent);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setAttribute(Qt::WA_NoMouseReplay);
    menu->setMinimumWidth(width);
    menu->setFont(textFont(TextStyle::body));
    return menu;
}

QString menuTitle(const QString& words) {
    const QFontMetrics metrics(textFont(TextStyle::body));
    QString title = metrics.elidedText(oneLine(words), Qt::ElideRight, longestTitle);
    return title.replace(u'&', QStringLiteral("&&"));
}

void showMenu(QMenu& menu, ColorScheme scheme, QPoint globalTopLeft) {
    styleMenu(menu, scheme);
    menu.popup(globalTopLeft);
}

}  // namespace brindle
