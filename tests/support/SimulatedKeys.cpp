#include "support/SimulatedKeys.h"

#include <utility>

#include "support/Text.h"

namespace brindle::test {

namespace {

class Source final : public KeyEventSource {
public:
    explicit Source(Journal& journal) : journal_(journal) {}
    ~Source() override { journal_.add("release key source"); }

private:
    Journal& journal_;
};

struct Event final : KeyEvent {
    Event(VirtualKey itsKey, KeyDirection itsDirection) : key(itsKey), direction(itsDirection) {}
    void setFlags(std::uint64_t next) override { flags = next; }

    VirtualKey key;
    KeyDirection direction;
    std::uint64_t flags = 0;
};

}  // namespace

std::unique_ptr<KeyEventSource> SimulatedKeyEvents::createSource(EventSourceState state) {
    if (refusesSource)
        return nullptr;
    journal_.add("create key source " + std::to_string(static_cast<int>(state)));
    return std::make_unique<Source>(journal_);
}

std::unique_ptr<KeyEvent> SimulatedKeyEvents::createKeyEvent(KeyEventSource& /*source*/, VirtualKey key,
                                                             KeyDirection direction) {
    return eventsLeft-- > 0 ? std::make_unique<Event>(key, direction) : nullptr;
}

void SimulatedKeyEvents::post(EventTapLocation location, const KeyEvent& posted) {
    const auto& event = dynamic_cast<const Event&>(posted);
    const bool isDown = event.direction == KeyDirection::down;
    journal_.add("key " + std::to_string(static_cast<int>(event.key)) + (isDown ? " down" : " up") +
                 " flags=" + hexadecimal(event.flags) + " at " + std::to_string(static_cast<int>(location)));
    if (event.key != VirtualKey::v || !isDown || (event.flags & eventFlags::command) == 0)
        return;
    const auto target = workspace_.frontmost();
    journal_.add((target ? target->localizedName().value_or("?") : "nobody") +
                 " pastes: " + pasteboard_.content().value_or("").string());
}

class SimulatedEventTaps::Tap final : public EventTap {
public:
    Tap(SimulatedEventTaps& taps, std::function<TapVerdict(const TappedKey&)> itsCallback)
        : callback(std::move(itsCallback)), taps_(taps) {
        taps_.taps_.push_back(this);
    }
    ~Tap() override { std::erase(taps_.taps_, this); }
    void enable(bool enabled) override {
        isEnabled = enabled;
        taps_.journal_.add(enabled ? "enable event tap" : "disable event tap");
    }

    std::function<TapVerdict(const TappedKey&)> callback;
    bool isEnabled = false;

private:
    SimulatedEventTaps& taps_;
};

std::unique_ptr<EventTap> SimulatedEventTaps::create(const TapRequest& request,
                                                     std::function<TapVerdict(const TappedKey&)> callback) {
    if (refuses)
        return nullptr;
    journal_.add("event tap at " + std::to_string(static_cast<int>(request.location)) + " for " +
                 hexadecimal(request.eventsOfInterest));
    return std::make_unique<Tap>(*this, std::move(callback));
}

bool SimulatedEventTaps::reachesApplications(VirtualKey key, std::uint64_t flags) {
    for (const Tap* tap : taps_) {
        if (tap->isEnabled && tap->callback({key, flags}) == TapVerdict::remove)
            return false;
    }
    return true;
}

std::int32_t SimulatedHotKeys::registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyId id,
                                              HotKeyRef& registered) {
    if (status != noError)
        return status;
    registered = ++lastRef_;
    registered_[registered] = {keyCode, modifiers};
    journal_.add("hot key " + std::to_string(keyCode) + " " + hexadecimal(modifiers) + " as " +
                 hexadecimal(id.signature) + "/" + std::to_string(id.id));
    return noError;
}

void SimulatedHotKeys::unregisterHotKey(HotKeyRef hotKey) {
    if (registered_.erase(hotKey) != 0)
        journal_.add("hot key given back");
}

EventHandlerRef SimulatedHotKeys::installEventHandler(EventTypeSpec type, std::function<void()> handler) {
    handlers_.push_back(std::move(handler));
    journal_.add("hot key handler for " + hexadecimal(type.eventClass) + "/" + std::to_string(type.eventKind));
    return static_cast<EventHandlerRef>(handlers_.size());
}

void SimulatedHotKeys::press(std::uint32_t keyCode, std::uint32_t modifiers) {
    for (const auto& [ref, combination] : registered_) {
        if (combination != std::pair(keyCode, modifiers))
            continue;
        for (const auto& handler : handlers_)
            handler();
    }
}

}  // namespace brindle::test
