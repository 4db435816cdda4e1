#include "views/SheetView.h"

#include <QPainter>
#include <utility>

#include "views/AccessibleRole.h"
#include "views/Palette.h"

namespace brindle {

SheetView::SheetView(const QString& name, QSize size, std::function<void()> dismiss) : dismiss_(std::move(dismiss)) {
    setAccessible(*this, QAccessible::Dialog, name);
    setFixedSize(size);
}

void SheetView::setColorScheme(ColorScheme scheme) {
    scheme_ = scheme;
    update();
}

void SheetView::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), color(Role::surface, scheme_));
}

}  // namespace brindle
