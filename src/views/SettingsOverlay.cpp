#include "views/SettingsOverlay.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "platform/MainQueue.h"
#include "platform/Platform.h"
#include "platform/qt/SoftShadow.h"
#include "views/Palette.h"

namespace brindle {

namespace {

constexpr double stepTime = 1.0 / 60;  // seconds

const SoftShadow panelShadow = {{0, 0}, 10, QColor(0, 0, 0, 84)};

}  // namespace

SettingsOverlay::SettingsOverlay(SettingsManager& settingsManager, Published<bool>& isPresented, QWidget* parent)
    : QWidget(parent), isPresented_(isPresented), panel_(settingsManager, isPresented, this) {
    setAttribute(Qt::WA_NoMousePropagation);
    setContextMenuPolicy(Qt::PreventContextMenu);
    hide();
}

void SettingsOverlay::setPresented(bool isPresented, Motion motion) {
    if (isPresented == isEntering_)
        return;
    isEntering_ = isPresented;
    isPressed_ = false;
    // On its way out it is in nobody's way.
    setAttribute(Qt::WA_TransparentForMouseEvents, !isPresented);
    if (isPresented)
        focusBefore_ = window()->focusWidget();
    else
        releaseFocus();
    steps_.reset();
    if (motion == Motion::none) {
        progress_ = isPresented ? 1 : 0;
    } else {
        steppedAt_ = platform().mainQueue().uptime();
        steps_ = platform().mainQueue().repeat(stepTime, [this] { step(); });
    }
    showProgress();
}

// Back to where it was, before the toolkit gives the keyboard to whatever comes next.
void SettingsOverlay::releaseFocus() {
    const QWidget* focused = window()->focusWidget();
    if (!focused || (focused != parentWidget() && !isAncestorOf(focused)))
        return;
    QWidget* before = focusBefore_ && focusBefore_->isVisible() ? focusBefore_.data() : parentWidget();
    before->setFocus(Qt::PopupFocusReason);
}

void SettingsOverlay::step() {
    const double now = platform().mainQueue().uptime();
    const double passed = (now - steppedAt_) / slideTime;
    steppedAt_ = now;
    progress_ = std::clamp(progress_ + (isEntering_ ? passed : -passed), 0.0, 1.0);
    if (progress_ == (isEntering_ ? 1 : 0))
        steps_.reset();
    showProgress();
}

/// From 0 to 1, slow at both ends.
double SettingsOverlay::visiblePart() const {
    return progress_ * progress_ * (3 - 2 * progress_);
}

void SettingsOverlay::showProgress() {
    const int middle = (height() - panel_.height()) / 2;
    const int outside = height() + static_cast<int>(3 * panelShadow.sigma);
    panel_.move((width() - panel_.width()) / 2,
                static_cast<int>(std::lround(outside + (middle - outside) * visiblePart())));
    setVisible(isEntering_ || progress_ > 0);
    update();
}

void SettingsOverlay::setColorScheme(ColorScheme scheme) {
    scheme_ = scheme;
    panel_.setColorScheme(scheme);
    update();
}

void SettingsOverlay::mousePressEvent(QMouseEvent* event) {
    isPressed_ = event->button() == Qt::LeftButton;
}

void SettingsOverlay::mouseReleaseEvent(QMouseEvent* event) {
    const QPoint place = event->position().toPoint();
    if (std::exchange(isPressed_, false) && rect().contains(place) && !panel_.geometry().contains(place))
        isPresented_ = false;
}

void SettingsOverlay::resizeEvent(QResizeEvent*) {
    showProgress();
}

void SettingsOverlay::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QColor dim = color(Role::dim, scheme_);
    dim.setAlphaF(static_cast<float>(dim.alphaF() * visiblePart()));
    painter.fillRect(rect(), dim);
    paintShadow(painter, panel_.geometry(), SettingsView::cornerRadius, panelShadow);
}

}  // namespace brindle
