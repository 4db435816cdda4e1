#pragma once

#include <QDBusConnection>
#include <QObject>
#include <memory>

#include "platform/SingleInstance.h"
#include "platform/freedesktop/LockFileInstance.h"

namespace brindle {

/// Holds the name org.brindle.Brindle on the session bus until the process ends. Another start calls Toggle there;
/// so can a desktop's own shortcut. Without a bus a lock file stands in.
class BusSingleInstance : public QObject, public SingleInstance {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.brindle.Brindle")

public:
    [[nodiscard]] InstanceClaim claim() override;
    [[nodiscard]] Subscription onSecondStart(std::function<void()> observer) override;
    Q_SLOT Q_SCRIPTABLE void Toggle();

private:
    [[nodiscard]] std::optional<InstanceClaim> claimOn(QDBusConnection& bus);

    Signal<> starts_;
    std::unique_ptr<LockFileInstance> lock_;
};

}  // namespace brindle
