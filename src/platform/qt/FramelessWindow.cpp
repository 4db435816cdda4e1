#include "platform/qt/FramelessWindow.h"

#include <QApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScreen>
#include <QWindow>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

#include "platform/qt/Placement.h"
#include "platform/qt/WindowShadow.h"

namespace brindle {

namespace {

using namespace std::chrono_literals;

// In which a window manager places a window. Meanwhile the toolkit may take it to be on another screen, at the place
// and of the size that it would have there.
constexpr auto settlingTime = 100ms;

WindowSystem& windowSystemOf(const QWidget& owner) {
    static WindowSystem unknown;
    const auto* window = FramelessWindow::of(&owner);
    return window != nullptr ? window->windowSystem() : unknown;
}

QPainterPath roundedRect(QRectF rect, double radius) {
    QPainterPath path;
    path.addRoundedRect(rect, radius, radius);
    return path;
}

QPainterPath outside(const QPainterPath& path, QRectF rect) {
    QPainterPath whole;
    whole.addRect(rect);
    return whole - path;
}

/// The whole points inside a rounded rectangle.
QRegion roundedRegion(QRect rect, int radius) {
    QRegion region = rect.adjusted(0, radius, 0, -radius);
    for (int row = 0; row < radius; ++row) {
        const double rise = radius - row - 0.5;
        const int inset = static_cast<int>(std::lround(radius - std::sqrt(radius * radius - rise * rise)));
        const int width = rect.width() - 2 * inset;
        region += QRect(rect.x() + inset, rect.y() + row, width, 1);
        region += QRect(rect.x() + inset, rect.y() + rect.height() - 1 - row, width, 1);
    }
    return region;
}

}  // namespace

/// Lies over the content and finishes what is already painted there: the hairline, and the corners, which it takes
/// away and fills with the shadow.
class FramelessWindow::Edge : public QWidget {
public:
    explicit Edge(FramelessWindow& window) : QWidget(&window), window_(window) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
    }

protected:
    void resizeEvent(QResizeEvent* /*event*/) override {
        // Only here does anything need painting when the content changes.
        QRegion region = QRegion(rect()) - rect().adjusted(1, 1, -1, -1);
        const QRect corner(0, 0, cornerRadius, cornerRadius);
        for (const int x : {0, width() - cornerRadius})
            for (const int y : {0, height() - cornerRadius})
                region += corner.translated(x, y);
        setMask(region);
    }

    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        // Up to the very corner: outside the curve nobody sees it, and without translucency it hides the mask's steps.
        const QColor hairline(window_.scheme_ == ColorScheme::dark ? 0x3B4A60 : 0xCBD5E1);
        const QRectF inner = QRectF(rect()).adjusted(1, 1, -1, -1);
        painter.fillPath(outside(roundedRect(inner, cornerRadius - 1), rect()), hairline);
        if (!window_.isComposited_)
            return;
        painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
        painter.fillPath(outside(roundedRect(rect(), cornerRadius), rect()), Qt::black);
        painter.setCompositionMode(QPainter::CompositionMode_DestinationOver);
        WindowShadow::paint(painter, rect(), window_.scheme_);
    }

private:
    FramelessWindow& window_;
};

/// Lies over the content while there is a sheet and keeps the mouse from it. The toolkit's own modality would do so
/// too, but hands the focus on with a time that window managers find too old.
class FramelessWindow::Veil : public QWidget {
public:
    explicit Veil(FramelessWindow& window) : QWidget(&window) {
        setAttribute(Qt::WA_NoMousePropagation);
        setContextMenuPolicy(Qt::PreventContextMenu);
        hide();
    }
};

FramelessWindow::FramelessWindow(WindowSystem& windowSystem) : FramelessWindow(windowSystem, nullptr) {}

FramelessWindow::FramelessWindow(QWidget& owner) : FramelessWindow(windowSystemOf(owner), owner.window()) {
    if (auto* window = FramelessWindow::of(&owner))
        connect(window, &FramelessWindow::closed, this, &QWidget::hide);
}

FramelessWindow::FramelessWindow(WindowSystem& windowSystem, QWidget* owner)
    : QWidget(owner, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::NoDropShadowWindowHint),
      windowSystem_(&windowSystem),
      isComposited_(windowSystem.isComposited()),
      veil_(new Veil(*this)),
      edge_(new Edge(*this)) {
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_QuitOnClose, false);
    settling_.setSingleShot(true);
    settling_.callOnTimeout([this] { settle(); });
    compositing_ = windowSystem.onCompositingChange([this] { followCompositing(); });
}

void FramelessWindow::setContent(QWidget& content) {
    content_ = &content;
    content.setParent(this);
    content.show();
    veil_->raise();
    edge_->raise();
    layOut(contentFrame().topLeft());
}

void FramelessWindow::setContentSize(QSize points) {
    contentSize_ = points;
    layOut(contentFrame().topLeft());
}

void FramelessWindow::setColorScheme(ColorScheme scheme) {
    scheme_ = scheme;
    update();
}

QRect FramelessWindow::contentFrame() const {
    return contentRect().translated(pos());
}

void FramelessWindow::moveContentTo(QPoint topLeft) {
    placed_ = topLeft;
    settling_.start(settlingTime);
    layOut(topLeft);
}

void FramelessWindow::presentSheet() {
    auto* owner = FramelessWindow::of(parentWidget());
    if (owner != nullptr)
        owner->setSheet(this);
    const QRect around = owner != nullptr ? owner->contentFrame() : screen()->availableGeometry();
    const QScreen* place = owner != nullptr ? owner->screen() : screen();
    QRect frame(QPoint(), contentSize_);
    frame.moveCenter(around.center());
    frame = frameOnScreen(frame, place->availableGeometry());
    // A sheet that is higher than its owner leaves nothing of it to be seen above or below.
    if (frame.height() > around.height())
        frame.moveTop(std::clamp(frame.top(), around.bottom() - frame.height() + 1, around.top()));
    moveContentTo(frame.topLeft());
    show();
    takeFocus();
}

void FramelessWindow::takeFocus() {
    if (!isVisible())
        return;
    raise();
    activateWindow();
    windowSystem_->takeFocus(*windowHandle());
}

void FramelessWindow::setSheet(FramelessWindow* sheet) {
    sheet_ = sheet;
    veil_->setVisible(sheet != nullptr);
}

FramelessWindow* FramelessWindow::of(const QWidget* widget) {
    for (; widget != nullptr; widget = widget->window()->parentWidget())
        if (auto* window = qobject_cast<FramelessWindow*>(widget->window()))
            return window;
    return nullptr;
}

bool FramelessWindow::event(QEvent* event) {
    if (event->type() == QEvent::ScreenChangeInternal) {
        // Both were told in pixels of the screen before.
        if (windowHandle() != nullptr) {
            windowHandle()->setMask(mask());
            windowSystem_->setContentRectangle(*windowHandle(), contentRect(), shadowMargins());
        }
        hasChangedScreen_ = true;
        settling_.start(settlingTime);
    }
    if (event->type() == QEvent::WindowActivate && sheet_)
        sheet_->takeFocus();
    return QWidget::event(event);
}

void FramelessWindow::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    if (event->spontaneous())
        return;
    // A menu is a window of its own and would stay behind.
    while (auto* menu = QApplication::activePopupWidget()) {
        if (FramelessWindow::of(menu) != this || !menu->close())
            break;
    }
    // Left to itself, a window manager may give the focus to another program.
    if (auto* owner = FramelessWindow::of(parentWidget())) {
        if (owner->sheet_ == this)
            owner->setSheet(nullptr);
        (owner->sheet_ ? owner->sheet_.data() : owner)->takeFocus();
    }
    Q_EMIT closed();
}

void FramelessWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        (sheet_ ? sheet_.data() : this)->hide();
    else
        QWidget::keyPressEvent(event);
}

void FramelessWindow::paintEvent(QPaintEvent* /*event*/) {
    if (!isComposited_)
        return;
    QPainter painter(this);
    WindowShadow::paint(painter, contentRect(), scheme_);
}

void FramelessWindow::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    connect(screen(), &QScreen::availableGeometryChanged, this, &FramelessWindow::keepOnScreen, Qt::UniqueConnection);
    windowSystem_->keepOffTaskbar(*windowHandle());
    windowSystem_->setContentRectangle(*windowHandle(), contentRect(), shadowMargins());
}

QMargins FramelessWindow::shadowMargins() const {
    return isComposited_ ? WindowShadow::margins : QMargins();
}

QRect FramelessWindow::contentRect() const {
    return {QPoint(shadowMargins().left(), shadowMargins().top()), contentSize_};
}

QSize FramelessWindow::windowSize() const {
    return contentSize_.grownBy(shadowMargins());
}

void FramelessWindow::followCompositing() {
    const QPoint topLeft = contentFrame().topLeft();
    isComposited_ = windowSystem_->isComposited();
    layOut(topLeft);
    update();
}

void FramelessWindow::keepOnScreen() {
    const QRect frame(placed_.value_or(contentFrame().topLeft()), contentSize_);
    const QRect available = screen()->availableGeometry();
    const bool isOnScreen = available.contains(frame);
    if (isVisible() && !(isOnScreen && frame == contentFrame() && size() == windowSize()))
        layOut(isOnScreen ? frame.topLeft() : frameOnScreen(frame, available).topLeft());
}

void FramelessWindow::settle() {
    if (std::exchange(hasChangedScreen_, false))
        keepOnScreen();
    placed_.reset();
}

void FramelessWindow::layOut(QPoint contentTopLeft) {
    const QRect inner = contentRect();
    // The size is fixed only afterwards: the window manager gets one move and resize, and the limits that allow it.
    setMinimumSize(0, 0);
    setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    setGeometry(QRect(contentTopLeft - inner.topLeft(), windowSize()));
    // Not only when it is shown: the toolkit raises it first, and the answer to that, with the old place and size,
    // would then be taken for a move to another screen.
    if (windowHandle() != nullptr)
        windowHandle()->setGeometry(geometry());
    setFixedSize(size());
    setBaseSize(size());  // at a scale of 1.5 the toolkit allows steps of two pixels, which are counted from here
    if (content_ != nullptr)
        content_->setGeometry(inner);
    veil_->setGeometry(inner);
    edge_->setGeometry(inner);
    if (isComposited_)
        clearMask();
    else
        setMask(roundedRegion(inner, cornerRadius));
    if (windowHandle() != nullptr)
        windowSystem_->setContentRectangle(*windowHandle(), inner, shadowMargins());
}

}  // namespace brindle
