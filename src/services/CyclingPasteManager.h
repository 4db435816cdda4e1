#pragma once

#include <cstddef>
#include <memory>

#include "base/Date.h"
#include "platform/EventTaps.h"

namespace brindle {

class HistoryManager;

/// Control+Command+V: pastes the newest entry, and on each further press within five seconds the next older one.
/// Main thread. The tap's callback only queues the step.
class CyclingPasteManager : public std::enable_shared_from_this<CyclingPasteManager> {
public:
    static constexpr double resetInterval = 5.0;  ///< seconds of rest after which it starts again at the newest

    /// Installs the event tap; a refusal is one line in the log, and the shortcut then does nothing.
    static std::shared_ptr<CyclingPasteManager> create(HistoryManager& historyManager);
    CyclingPasteManager(const CyclingPasteManager&) = delete;
    CyclingPasteManager& operator=(const CyclingPasteManager&) = delete;

    void cyclePaste();  ///< one step

private:
    explicit CyclingPasteManager(HistoryManager& historyManager);
    void setupEventTap();
    TapVerdict handleTapEvent(const TappedKey& pressed);
    void rememberFrontmost();

    HistoryManager& historyManager_;
    std::size_t currentIndex_ = 0;
    Date lastPasteTime_ = Date::distantPast();
    std::unique_ptr<EventTap> tap_;
};

}  // namespace brindle
