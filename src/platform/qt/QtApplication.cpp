#include "platform/qt/QtApplication.h"

#include <QApplication>
#include <QSessionManager>
#include <utility>

#include "platform/qt/FramelessWindow.h"

namespace brindle {

namespace {

/// The tray icon's own window, which the toolkit makes, is no window of the program's.
bool isWindowOfOurs(const QWidget& widget) {
    return !widget.windowFlags().testFlag(Qt::X11BypassWindowManagerHint);
}

void closePopups() {
    while (auto* popup = QApplication::activePopupWidget())
        if (!popup->close())
            return;
}

}  // namespace

QtApplication::QtApplication() : quitSignals_([this] { terminate(); }) {
    QApplication::setQuitOnLastWindowClosed(false);
    // The desktop starts the program by its login item, or not at all.
    connect(qApp, &QGuiApplication::saveStateRequest, this,
            [](QSessionManager& session) { session.setRestartHint(QSessionManager::RestartNever); });
}

void QtApplication::activateIgnoringOtherApps() {
    FramelessWindow* front = nullptr;
    for (auto* widget : QApplication::topLevelWidgets())
        if (auto* window = qobject_cast<FramelessWindow*>(widget); window != nullptr && window->isVisible())
            if (front == nullptr || window->parentWidget() != nullptr)  // a sheet is in front of its owner
                front = window;
    if (front != nullptr)
        front->takeFocus();
}

void QtApplication::deactivate() {
    // Only menus hold on to the keyboard; a window gives it up by going, or when another application takes it.
    closePopups();
}

void QtApplication::hide() {
    closePopups();
    for (auto* widget : QApplication::topLevelWidgets())
        if (widget->isVisible() && isWindowOfOurs(*widget))
            widget->hide();
}

void QtApplication::terminate() {
    // Not quit(): that asks every window first and can be refused.
    QCoreApplication::exit();
}

void QtApplication::handle(EventType event, const std::function<void()>& action) {
    const auto outer = std::exchange(currentEvent_, event);
    action();
    currentEvent_ = outer;
}

}  // namespace brindle
