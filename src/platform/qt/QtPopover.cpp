#include "platform/qt/QtPopover.h"

#include <QApplication>
#include <QScreen>
#include <QWindow>
#include <chrono>

#include "platform/MouseMonitor.h"
#include "platform/qt/Placement.h"

namespace brindle {

namespace {

using namespace std::chrono_literals;

constexpr auto clickGrace = static_cast<qint64>(MouseMonitor::statusClickGrace * 1000);  // milliseconds
constexpr auto lookInterval = 25ms;
constexpr auto preparationDelay = 100ms;  // in which the icon gets into the tray

QRect toQRect(Rect rect) {
    return QRectF(rect.origin.x, rect.origin.y, rect.size.width, rect.size.height).toAlignedRect();
}

Rect toRect(QRect rect) {
    return {{static_cast<double>(rect.x()), static_cast<double>(rect.y())},
            {static_cast<double>(rect.width()), static_cast<double>(rect.height())}};
}

const QScreen& screenAt(QPoint point) {
    const auto* found = QGuiApplication::screenAt(point);
    return found != nullptr ? *found : *QGuiApplication::primaryScreen();
}

}  // namespace

QtPopover::QtPopover(WindowSystem& windowSystem) : window_(windowSystem) {
    preparation_.setSingleShot(true);
    preparation_.callOnTimeout([this] {
        prepare();
        window_.grab();  // the fonts, pictures and shadow that it takes to paint it
    });
    focusLoss_.setInterval(lookInterval);
    focusLoss_.callOnTimeout([this] { closeUnlessFocused(); });
    QObject::connect(qGuiApp, &QGuiApplication::focusWindowChanged, &window_,
                     [this](QWindow* focused) { followFocus(focused); });
}

void QtPopover::setContentSize(Size points) {
    window_.setContentSize(QSizeF(points.width, points.height).toSize());
}

void QtPopover::setBehavior(PopoverBehavior behavior) {
    isTransient_ = behavior == PopoverBehavior::transient;
}

void QtPopover::setContent(std::unique_ptr<PopoverContent> content) {
    colorScheme_.reset();
    preparation_.stop();
    content_.reset(dynamic_cast<QtPopoverContent*>(content.get()));
    if (!content_)
        return;
    static_cast<void>(content.release());  // it is content_ now
    // The start waits for the icon and not for the view; the first opening finds both.
    preparation_.start(preparationDelay);
}

void QtPopover::prepare() {
    if (colorScheme_ || !content_)
        return;
    window_.setContent(content_->widget());
    window_.setColorScheme(content_->colorScheme());
    colorScheme_ = content_->onColorSchemeChange([this] { window_.setColorScheme(content_->colorScheme()); });
    window_.winId();
}

bool QtPopover::isShown() const {
    return window_.isVisible();
}

void QtPopover::show(Rect anchor, RectEdge /*preferredEdge*/) {
    const QRect place = toQRect(anchor);
    const QRect available = screenAt(place.center()).availableGeometry();
    focusLoss_.stop();
    preparation_.stop();
    prepare();
    window_.moveContentTo(frameBesideAnchor(place, window_.contentFrame().size(), available).topLeft());
    window_.show();
    window_.raise();
}

void QtPopover::performClose() {
    focusLoss_.stop();
    window_.hide();  // a closed window loses the server's part of it, which the next opening would have to make again
}

std::optional<Rect> QtPopover::windowFrame() const {
    if (!content_)
        return std::nullopt;
    return toRect(window_.contentFrame());
}

void QtPopover::makeKeyWindow() {
    window_.takeFocus();
}

void QtPopover::followFocus(const QWindow* focused) {
    if (focused != nullptr)
        focusLoss_.stop();
    else if (isShown() && isTransient_) {
        sinceHold_.start();
        focusLoss_.start();
    }
}

void QtPopover::closeUnlessFocused() {
    // A menu of ours has the keyboard without being a focus window. A button that is held may be a click on a tray that
    // takes the focus: the click, which comes a while after the release, must find the popover as it was.
    const auto& system = window_.windowSystem();
    if (system.isMouseButtonDown() || system.hasFocus() || QApplication::activePopupWidget() != nullptr)
        sinceHold_.start();
    else if (sinceHold_.elapsed() >= clickGrace)
        performClose();
}

std::unique_ptr<Popover> QtPopovers::createPopover() {
    return std::make_unique<QtPopover>(windowSystem_);
}

}  // namespace brindle
