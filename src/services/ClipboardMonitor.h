#pragma once

#include <cstdint>

#include "base/Published.h"

namespace brindle {

class HistoryManager;
class Pasteboard;

/// Polls the pasteboard and hands new text to the history. Main thread.
class ClipboardMonitor {
public:
    static constexpr double pollInterval = 0.5;  ///< seconds

    /// Starts polling; it ends when the monitor is destroyed.
    explicit ClipboardMonitor(HistoryManager& historyManager);
    ClipboardMonitor(const ClipboardMonitor&) = delete;
    ClipboardMonitor& operator=(const ClipboardMonitor&) = delete;

    void startMonitoring();
    void checkClipboard();  ///< one poll

    [[nodiscard]] const Published<std::int64_t>& lastChangeCount() const { return lastChangeCount_; }

    /// Who writes to the pasteboard without wanting it captured sets this first, then clears, then writes. The next
    /// poll that sees a change clears it again and captures nothing.
    [[nodiscard]] bool isInternalCopy() const { return isInternalCopy_; }
    void setIsInternalCopy(bool isInternal) { isInternalCopy_ = isInternal; }

private:
    Published<std::int64_t> lastChangeCount_{0};
    Subscription timer_;
    Pasteboard& pasteboard_;
    HistoryManager& historyManager_;
    bool isInternalCopy_ = false;
};

}  // namespace brindle
