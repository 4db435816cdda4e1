#include "views/Sheet.h"

#include <utility>

#include "views/SheetView.h"

namespace brindle {

Sheet::Sheet(Published<bool>& isPresented, MakeView makeView, QWidget& popover)
    : isPresented_(isPresented), makeView_(std::move(makeView)), popover_(popover) {}

Sheet::~Sheet() {
    delete window_;
}

void Sheet::refresh(ColorScheme scheme) {
    const bool isWanted = isPresented_.value() && popover_.isVisible();
    if (isWanted && !window_)
        open(scheme);
    else if (!isWanted && window_)
        close();
    if (!window_)
        return;
    window_->setColorScheme(scheme);
    view_->setColorScheme(scheme);
}

void Sheet::open(ColorScheme scheme) {
    view_ = makeView_([this] { isPresented_ = false; });
    view_->setColorScheme(scheme);
    window_ = new FramelessWindow(popover_);
    window_->setWindowTitle(view_->accessibleName());
    window_->setColorScheme(scheme);
    window_->setContentSize(view_->size());
    window_->setContent(*view_);
    QObject::connect(window_, &FramelessWindow::closed, &popover_, [this] {
        // A popover that closes takes the sheet along and brings it back; the widgets in it are hidden only later.
        if (popover_.window()->isVisible())
            isPresented_ = false;
        else
            close();
    });
    window_->presentSheet();
}

// Not at once: a press or a drag in it may be under way.
void Sheet::close() {
    window_->disconnect(&popover_);
    window_->close();
    window_->deleteLater();
    window_ = nullptr;
}

}  // namespace brindle
