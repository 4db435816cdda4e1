#pragma once

#include <QDBusVariant>
#include <QObject>
#include <functional>
#include <optional>

#include "platform/ColorSchemes.h"

namespace brindle {

/// Follows the portal's setting "color-scheme" from its creation on. Main thread.
class PortalAppearance : public QObject {
    Q_OBJECT

public:
    explicit PortalAppearance(std::function<void()> changed);

    /// None until the portal answered, or when it has no preference.
    [[nodiscard]] std::optional<ColorScheme> scheme() const { return scheme_; }

private:
    Q_SLOT void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);
    void take(const QVariant& value);

    std::function<void()> changed_;
    std::optional<ColorScheme> scheme_;
};

}  // namespace brindle
