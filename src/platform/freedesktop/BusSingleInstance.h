#pragma once

#include <QDBusConnection>
#include <QObject>
#include <memory>

#include "platform/SingleInstance.h"
#include "platform/freedesktop/LockFileInstance.h"

namespace brindle {

/// Holds a lock beside the stored data, and where there is a session bus the name org.brindle.Brindle on it, until the
/// process ends. Another start tells this one by the lock's socket or by Toggle on the bus; so can a desktop's own
/// shortcut.
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
