#include "views/AppIcon.h"

#include <QIcon>
#include <QPixmapCache>
#include <string>

#include "platform/Platform.h"
#include "platform/Workspace.h"
#include "platform/qt/QtText.h"
#include "views/Palette.h"
#include "views/Symbols.h"

namespace brindle {

namespace {

QPixmap loadIcon(const std::string& bundleIdentifier, double ratio) {
    Workspace& workspace = platform().workspace();
    const auto application = workspace.applicationPath(bundleIdentifier);
    const auto icon = application ? workspace.iconForFile(*application) : std::nullopt;
    if (!icon)
        return {};
    const QString name = toQString(*icon);
    if (name.startsWith('/'))
        return imagePixmap(name, appIconSize, ratio);
    return QIcon::fromTheme(name).pixmap(QSize(appIconSize, appIconSize), ratio);
}

/// Empty when the desktop has none; that is remembered as well.
QPixmap applicationIcon(const std::string& bundleIdentifier, double ratio) {
    const QString key = QStringLiteral("application %1 %2").arg(toQString(bundleIdentifier), QString::number(ratio));
    QPixmap icon;
    if (QPixmapCache::find(key, &icon))
        return icon;
    icon = loadIcon(bundleIdentifier, ratio);
    QPixmapCache::insert(key, icon);
    return icon;
}

}  // namespace

QPixmap appIcon(const std::optional<SharedText>& bundleIdentifier, ColorScheme scheme, double devicePixelRatio) {
    if (bundleIdentifier) {
        QPixmap icon = applicationIcon(bundleIdentifier->string(), devicePixelRatio);
        if (!icon.isNull())
            return icon;
    }
    return symbolPixmap("doc.on.clipboard", appIconSize, color(Role::secondaryText, scheme), devicePixelRatio);
}

}  // namespace brindle
