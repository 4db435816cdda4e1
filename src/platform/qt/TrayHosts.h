#pragma once

#include <QObject>
#include <QTimer>
#include <functional>

#include "platform/qt/WindowSystem.h"

class QDBusServiceWatcher;

namespace brindle {

enum class TrayKind {
    notifier,  ///< StatusNotifierItem: the host draws the icon and its menu and tells of left clicks only
    embedding  ///< XEmbed: the icon is a window of ours
};

/// Waits for the first tray. The toolkit settles for one kind when it is first asked for a tray icon, and a tray of
/// the other kind never shows that icon then; so it must not be asked before there is a tray.
class TrayHosts : public QObject {
    Q_OBJECT

public:
    /// Calls `onFound` once, on a later turn.
    TrayHosts(WindowSystem& windowSystem, std::function<void(TrayKind)> onFound);

private Q_SLOTS:
    void askSoon();

private:
    void ask();
    void finish(bool hasNotifierHost);

    WindowSystem& windowSystem_;
    std::function<void(TrayKind)> onFound_;
    QTimer settling_;
    Subscription embeddingTray_;
};

}  // namespace brindle
