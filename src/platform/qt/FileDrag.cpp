#include "platform/qt/FileDrag.h"

#include <QCoreApplication>
#include <QDrag>
#include <QMimeData>
#include <QPixmap>
#include <QUrl>

#include "platform/qt/QtText.h"

namespace brindle {

void dragFile(std::string_view path, const QPixmap& picture) {
    auto* content = new QMimeData;
    content->setUrls({QUrl::fromLocalFile(toQString(path))});
    // Its source outlives the drag, which a window that closes meanwhile does not.
    auto* drag = new QDrag(QCoreApplication::instance());
    drag->setMimeData(content);
    drag->setPixmap(picture);
    const QSize half = picture.deviceIndependentSize().toSize() / 2;
    drag->setHotSpot({half.width(), half.height()});
    drag->exec(Qt::CopyAction);
}

}  // namespace brindle
