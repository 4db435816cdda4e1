#pragma once

#include "platform/EventTaps.h"
#include "platform/HotKeys.h"
#include "platform/KeyEvents.h"
#include "support/SimulatedDesktop.h"

/// The keyboard of a simulated desktop: what is posted to it, and who takes keys from it.
namespace brindle::test {

class SimulatedKeyEvents final : public KeyEvents {
public:
    SimulatedKeyEvents(Journal& journal, const SimulatedWorkspace& workspace, const SimulatedPasteboard& pasteboard)
        : journal_(journal), workspace_(workspace), pasteboard_(pasteboard) {}

    std::unique_ptr<KeyEventSource> createSource(EventSourceState state) override {
        if (refusesSource)
            return nullptr;
        journal_.add(printed("create key source %d", static_cast<int>(state)));
        return std::make_unique<Source>(journal_);
    }
    std::unique_ptr<KeyEvent> createKeyEvent(KeyEventSource& /*source*/, VirtualKey key,
                                             KeyDirection direction) override {
        return eventsLeft-- > 0 ? std::make_unique<Event>(key, direction) : nullptr;
    }
    /// Whoever is in front when V goes down with Command pastes.
    void post(EventTapLocation location, const KeyEvent& posted) override {
        const auto& event = dynamic_cast<const Event&>(posted);
        const bool isDown = event.direction == KeyDirection::down;
        journal_.add(printed("key %d ", static_cast<int>(event.key)) + (isDown ? "down" : "up") +
                     " flags=" + hexadecimal(event.flags) + printed(" at %d", static_cast<int>(location)));
        if (event.key != VirtualKey::v || !isDown || (event.flags & eventFlags::command) == 0)
            return;
        const auto target = workspace_.frontmost();
        journal_.add((target ? target->localizedName().value_or("?") : "nobody") +
                     " pastes: " + pasteboard_.content().value_or("").string());
    }

    bool refusesSource = false;
    int eventsLeft = 1000000;  ///< how many may still be created

private:
    struct Source final : KeyEventSource {
        explicit Source(Journal& itsJournal) : journal(itsJournal) {}
        ~Source() override { journal.add("release key source"); }
        Journal& journal;
    };
    struct Event final : KeyEvent {
        Event(VirtualKey itsKey, KeyDirection itsDirection) : key(itsKey), direction(itsDirection) {}
        void setFlags(std::uint64_t next) override { flags = next; }
        VirtualKey key;
        KeyDirection direction;
        std::uint64_t flags = 0;
    };

    Journal& journal_;
    const SimulatedWorkspace& workspace_;
    const SimulatedPasteboard& pasteboard_;
};

class SimulatedEventTaps final : public EventTaps {
public:
    explicit SimulatedEventTaps(Journal& journal) : journal_(journal) {}

    std::unique_ptr<EventTap> create(const TapRequest& request,
                                     std::function<TapVerdict(const TappedKey&)> callback) override {
        if (refuses)
            return nullptr;
        journal_.add(printed("event tap at %d for ", static_cast<int>(request.location)) +
                     hexadecimal(request.eventsOfInterest));
        return std::make_unique<Tap>(*this, std::move(callback));
    }

    /// The user presses a key; whether an application gets to see it.
    bool reachesApplications(VirtualKey key, std::uint64_t flags) {
        return std::ranges::none_of(taps_, [&](const Tap* tap) {
            return tap->isEnabled && tap->callback({key, flags}) == TapVerdict::remove;
        });
    }

    bool refuses = false;

private:
    struct Tap final : EventTap {
        Tap(SimulatedEventTaps& itsTaps, std::function<TapVerdict(const TappedKey&)> itsCallback)
            : taps(itsTaps), callback(std::move(itsCallback)) {
            taps.taps_.push_back(this);
        }
        ~Tap() override { std::erase(taps.taps_, this); }
        void enable(bool enabled) override {
            isEnabled = enabled;
            taps.journal_.add(enabled ? "enable event tap" : "disable event tap");
        }
        SimulatedEventTaps& taps;
        std::function<TapVerdict(const TappedKey&)> callback;
        bool isEnabled = false;
    };

    Journal& journal_;
    std::vector<Tap*> taps_;
};

class SimulatedHotKeys final : public HotKeys {
public:
    explicit SimulatedHotKeys(Journal& journal) : journal_(journal) {}

    std::int32_t registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyId id,
                                HotKeyRef& registered) override {
        if (status != noError)
            return status;
        registered = ++lastRef_;
        registered_[registered] = {keyCode, modifiers};
        journal_.add(printed("hot key %u ", keyCode) + hexadecimal(modifiers) + " as " + hexadecimal(id.signature) +
                     printed("/%u", id.id));
        return noError;
    }
    void unregisterHotKey(HotKeyRef hotKey) override {
        if (registered_.erase(hotKey) != 0)
            journal_.add("hot key given back");
    }
    EventHandlerRef installEventHandler(EventTypeSpec type, std::function<void()> handler) override {
        handlers_.push_back(std::move(handler));
        journal_.add("hot key handler for " + hexadecimal(type.eventClass) + printed("/%u", type.eventKind));
        return static_cast<EventHandlerRef>(handlers_.size());
    }

    void press(std::uint32_t keyCode, std::uint32_t modifiers) {
        for (const auto& [ref, combination] : registered_) {
            for (std::size_t i = 0; combination == std::pair(keyCode, modifiers) && i < handlers_.size(); ++i)
                handlers_[i]();
        }
    }

    std::int32_t status = noError;  ///< of the next registration

private:
    Journal& journal_;
    HotKeyRef lastRef_ = 0;
    std::map<HotKeyRef, std::pair<std::uint32_t, std::uint32_t>> registered_;
    std::vector<std::function<void()>> handlers_;
};

}  // namespace brindle::test
