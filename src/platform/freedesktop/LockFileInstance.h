#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>
#include <string>

#include "platform/SingleInstance.h"

namespace brindle {

/// One process for the stored data by a lock on a file beside it. The socket next to it tells of later starts. The lock
/// is held until the process ends.
class LockFileInstance {
public:
    explicit LockFileInstance(std::function<void()> onSecondStart);
    ~LockFileInstance();
    LockFileInstance(const LockFileInstance&) = delete;
    LockFileInstance& operator=(const LockFileInstance&) = delete;

    [[nodiscard]] InstanceClaim claim();

private:
    void listen(const std::string& path);
    [[nodiscard]] static bool tell(const std::string& path);

    std::function<void()> onSecondStart_;
    int lock_ = -1;
    int socket_ = -1;
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace brindle
