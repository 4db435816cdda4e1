#pragma once

#include <map>
#include <vector>

#include "platform/EventTaps.h"
#include "platform/HotKeys.h"
#include "platform/KeyEvents.h"
#include "support/Journal.h"
#include "support/SimulatedDesktop.h"

/// The keyboard of a simulated desktop: what is posted to it, and who takes keys from it.
namespace brindle::test {

class SimulatedKeyEvents final : public KeyEvents {
public:
    SimulatedKeyEvents(Journal& journal, const SimulatedWorkspace& workspace, const SimulatedPasteboard& pasteboard)
        : journal_(journal), workspace_(workspace), pasteboard_(pasteboard) {}

    std::unique_ptr<KeyEventSource> createSource(EventSourceState state) override;
    std::unique_ptr<KeyEvent> createKeyEvent(KeyEventSource& source, VirtualKey key, KeyDirection direction) override;
    /// Whoever is in front when V goes down with Command pastes.
    void post(EventTapLocation location, const KeyEvent& event) override;

    bool refusesSource = false;
    int eventsLeft = 1000000;  ///< how many may still be created

private:
    Journal& journal_;
    const SimulatedWorkspace& workspace_;
    const SimulatedPasteboard& pasteboard_;
};

class SimulatedEventTaps final : public EventTaps {
public:
    explicit SimulatedEventTaps(Journal& journal) : journal_(journal) {}

    std::unique_ptr<EventTap> create(const TapRequest& request,
                                     std::function<TapVerdict(const TappedKey&)> callback) override;

    /// The user presses a key; whether an application gets to see it.
    bool reachesApplications(VirtualKey key, std::uint64_t flags);

    bool refuses = false;

private:
    class Tap;
    Journal& journal_;
    std::vector<Tap*> taps_;
};

class SimulatedHotKeys final : public HotKeys {
public:
    explicit SimulatedHotKeys(Journal& journal) : journal_(journal) {}

    std::int32_t registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyId id,
                                HotKeyRef& registered) override;
    void unregisterHotKey(HotKeyRef hotKey) override;
    EventHandlerRef installEventHandler(EventTypeSpec type, std::function<void()> handler) override;

    void press(std::uint32_t keyCode, std::uint32_t modifiers);

    std::int32_t status = noError;  ///< of the next registration

private:
    Journal& journal_;
    HotKeyRef lastRef_ = 0;
    std::map<HotKeyRef, std::pair<std::uint32_t, std::uint32_t>> registered_;
    std::vector<std::function<void()>> handlers_;
};

}  // namespace brindle::test
