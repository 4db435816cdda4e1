#include "platform/qt/QtStatusItem.h"

#include <QApplication>
#include <QCursor>
#include <QKeyEvent>
#include <QScreen>
#include <utility>

#include "platform/qt/FramelessWindow.h"
#include "platform/qt/MenuStyle.h"
#include "platform/qt/QtText.h"
#include "platform/qt/TemplateIcon.h"

namespace brindle {

namespace {

using namespace std::chrono_literals;

constexpr auto dockingTime = 500ms;  // after which an embedded icon has its place and its background
constexpr auto lookInterval = 10ms;  // for the end of a click
constexpr int edgeGap = 8;           // points

void fill(QMenu& menu, const Menu& items) {
    for (const auto& item : items)
        QObject::connect(menu.addAction(toQString(item.title)), &QAction::triggered, &menu,
                         [action = item.action] { action(); });
}

/// A menu in which the items' key equivalents work while it is open; the toolkit's shortcuts need an active window.
class StatusMenu : public QMenu {
public:
    explicit StatusMenu(const Menu& items) {
        fill(*this, items);
        for (std::size_t i = 0; i < items.size(); ++i)
            if (const auto key = toQString(items[i].keyEquivalent).toUpper(); !key.isEmpty()) {
                auto* action = actions()[static_cast<qsizetype>(i)];
                action->setText(action->text() + QStringLiteral("\tCmd+") + key);
                action->setData(QKeySequence(QStringLiteral("Meta+") + key));
            }
    }

protected:
    void keyPressEvent(QKeyEvent* event) override {
        const QKeySequence pressed(event->keyCombination());
        for (auto* action : actions())
            if (action->data().value<QKeySequence>() == pressed) {
                close();
                action->trigger();
                return;
            }
        QMenu::keyPressEvent(event);
    }
};

const QScreen& screenWithPointer() {
    const auto* found = QGuiApplication::screenAt(QCursor::pos());
    return found != nullptr ? *found : *QGuiApplication::primaryScreen();
}

Rect toRect(QRect rect) {
    return {{static_cast<double>(rect.x()), static_cast<double>(rect.y())},
            {static_cast<double>(rect.width()), static_cast<double>(rect.height())}};
}

}  // namespace

QtStatusItem::QtStatusItem(StatusBarContext& context)
    : context_(context), hosts_(context.windowSystem, [this](TrayKind kind) { createIcon(kind); }) {
    docking_.setSingleShot(true);
    docking_.callOnTimeout([this] { updateIcon(); });
    release_.setInterval(lookInterval);
    release_.callOnTimeout([this] { awaitRelease(); });
    colorScheme_ = context_.colorSchemes.onChange([this] { docking_.start(dockingTime); });
    // A host says nothing of a right click but that it is about to show the menu.
    QObject::connect(&hostMenu_, &QMenu::aboutToShow, &hostMenu_, [this] { context_.clicks.emit(); });
    embeddingTray_ = context_.windowSystem.onEmbeddingTrayChange([this] { docking_.start(dockingTime); });
}

void QtStatusItem::setHostMenu(std::function<Menu()> makeMenu) {
    // Asked now and not when the menu opens: lxqt-panel shows nothing when the items change under it then.
    hostMenu_.clear();
    fill(hostMenu_, makeMenu());
}

Rect QtStatusItem::bounds() const {
    if (const QRect frame = embeddedFrame(); !frame.isEmpty())
        return toRect(frame);
    if (lastClick_ && QGuiApplication::screenAt(*lastClick_) != nullptr)
        return toRect(QRect(*lastClick_, QSize(1, 1)));
    const QRect available = screenWithPointer().availableGeometry();
    return toRect(QRect(available.x() + available.width() - edgeGap, available.y() + edgeGap, 0, 0));
}

void QtStatusItem::setImage(const Image& image) {
    image_ = image;
    updateIcon();
}

void QtStatusItem::performClick() {
    if (menu_)
        showMenu();
    else if (action_)
        action_();
}

void QtStatusItem::createIcon(TrayKind kind) {
    kind_ = kind;
    context_.isIconElsewhere = kind == TrayKind::notifier;
    icon_ = std::make_unique<QSystemTrayIcon>();
    icon_->setToolTip(QGuiApplication::applicationDisplayName());
    QObject::connect(icon_.get(), &QSystemTrayIcon::activated, icon_.get(),
                     [this](auto reason) { handleActivation(reason); });
    // In an embedding tray the toolkit would show this menu itself, beside the one for the click.
    if (kind == TrayKind::notifier)
        icon_->setContextMenu(&hostMenu_);
    updateIcon();
    icon_->show();
    docking_.start(dockingTime);
}

void QtStatusItem::handleActivation(QSystemTrayIcon::ActivationReason reason) {
    lastClick_ = QCursor::pos();
    docking_.start(dockingTime);  // the panel may look different by now
    context_.clicks.emit();
    handleClick();  // one before it whose release was not seen between the two
    // The second press of a double click comes as DoubleClick alone.
    if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::DoubleClick)
        click_ = EventType::leftMouseUp;
    else if (reason == QSystemTrayIcon::Context)
        click_ = EventType::rightMouseUp;
    awaitRelease();
}

// An icon in an embedding tray is told of the press; a host tells of the whole click.
void QtStatusItem::awaitRelease() {
    if (kind_ == TrayKind::embedding && context_.windowSystem.isMouseButtonDown())
        release_.start();
    else
        handleClick();
}

void QtStatusItem::handleClick() {
    release_.stop();
    const auto event = std::exchange(click_, std::nullopt);
    const auto mask = event == EventType::rightMouseUp ? rightMouseUpMask : leftMouseUpMask;
    if (event && action_ && (mask_ & mask) != 0)
        context_.application.handle(*event, action_);
}

void QtStatusItem::showMenu() {
    if (openMenu_ != nullptr)
        openMenu_->close();
    openMenu_ = new StatusMenu(*menu_);
    openMenu_->setAttribute(Qt::WA_DeleteOnClose);
    styleMenu(*openMenu_, menuScheme(),
              context_.windowSystem.isComposited() ? MenuCorners::round : MenuCorners::square);
    openMenu_->popup(QCursor::pos());
}

ColorScheme QtStatusItem::menuScheme() const {
    for (const auto* widget : QApplication::topLevelWidgets())
        if (const auto* window = qobject_cast<const FramelessWindow*>(widget))
            return window->colorScheme();
    return context_.colorSchemes.systemColorScheme();
}

void QtStatusItem::updateIcon() {
    if (!icon_)
        return;
    const ColorScheme panel = panelScheme();
    if (!icon_->icon().isNull() && shownImage_ == image_.path && shownPanel_ == panel)
        return;
    shownImage_ = image_.path;
    shownPanel_ = panel;
    icon_->setIcon(panelIcon(image_, panel));
}

ColorScheme QtStatusItem::panelScheme() const {
    // No panel tells its colour, but it can be seen. In an embedding tray the icon's corner, which the picture leaves
    // free, shows it.
    const QRect frame = embeddedFrame();
    if (frame.isEmpty()) {
        const auto seen = kind_ == TrayKind::notifier ? context_.windowSystem.panelScheme() : std::nullopt;
        return seen ? *seen : context_.colorSchemes.systemColorScheme();
    }
    auto* screen = QGuiApplication::screenAt(frame.center());
    if (screen == nullptr)
        return context_.colorSchemes.systemColorScheme();
    const QPoint corner = frame.topLeft() - screen->geometry().topLeft();
    const QImage pixel = screen->grabWindow(0, corner.x(), corner.y(), 1, 1).toImage();
    constexpr int middleGray = 128;
    return !pixel.isNull() && qGray(pixel.pixel(0, 0)) < middleGray ? ColorScheme::dark : ColorScheme::light;
}

QRect QtStatusItem::embeddedFrame() const {
    if (!icon_ || kind_ != TrayKind::embedding || !context_.windowSystem.hasEmbeddingTray())
        return {};
    return icon_->geometry();
}

std::unique_ptr<StatusItem> QtStatusBar::createStatusItem(double /*length*/) {
    return std::make_unique<QtStatusItem>(context_);
}

}  // namespace brindle
