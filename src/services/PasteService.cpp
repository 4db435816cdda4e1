#include "services/PasteService.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/Log.h"
#include "platform/KeyEvents.h"
#include "platform/MainQueue.h"
#include "platform/Workspace.h"
#include "services/AccessibilityPermissionHelper.h"
#include "services/FocusDelegate.h"
#include "services/PasteTarget.h"

namespace brindle {

namespace {

// Seconds after the call.
constexpr double closingDelay = 0.03;
constexpr double activationDelay = 0.08;
constexpr double waitDelay = 0.11;
constexpr double callUnlockDelay = 1.0;

// Seconds after the step before.
constexpr double waitLimit = 1.2;
constexpr double pollInterval = 0.05;
constexpr double postUnlockDelay = 0.05;

// After each key event but the last.
constexpr std::array<unsigned, 3> pausesInMicroseconds = {8000, 12000, 8000};

bool isPasting = false;
int sequencesUnderWay = 0;  // the lock tells less: it goes after a second and is there without a sequence
std::vector<std::function<void()>> stepsAfterPaste;

void scheduleUnlock(double delay) {
    platform().mainQueue().after(delay, [] { isPasting = false; });
}

void endSequence() {
    if (--sequencesUnderWay > 0)
        return;
    for (const auto& step : std::exchange(stepsAfterPaste, {}))
        step();
}

void closeAndHide() {
    if (auto* const delegate = focusDelegate())
        delegate->closePopover();
    platform().application().deactivate();
    platform().application().hide();
}

using KeyEventSequence = std::array<std::unique_ptr<KeyEvent>, pausesInMicroseconds.size() + 1>;

KeyEventSequence createCommandV(KeyEventSource& source) {
    auto& keys = platform().keyEvents();
    return {keys.createKeyEvent(source, VirtualKey::command, KeyDirection::down),
            keys.createKeyEvent(source, VirtualKey::v, KeyDirection::down),
            keys.createKeyEvent(source, VirtualKey::v, KeyDirection::up),
            keys.createKeyEvent(source, VirtualKey::command, KeyDirection::up)};
}

void post(const KeyEventSequence& events) {
    for (std::size_t i = 0; i < events.size(); ++i) {
        if (i > 0)
            platform().mainQueue().sleepMicroseconds(pausesInMicroseconds[i - 1]);
        platform().keyEvents().post(EventTapLocation::hid, *events[i]);
    }
}

void sendCommandV() {
    const auto source = platform().keyEvents().createSource(EventSourceState::hidSystem);
    if (!source) {
        log("❌ Failed to create event source");
        return;
    }
    const auto events = createCommandV(*source);
    if (!std::ranges::all_of(events, [](const auto& event) { return event != nullptr; })) {
        log("❌ Failed to create keyboard events");
        return;
    }
    // The release of Command keeps the flags that it was created with.
    std::for_each(events.begin(), std::prev(events.end()),
                  [](const auto& event) { event->setFlags(eventFlags::command); });
    post(events);
    log("⌨️ Sent Cmd+V to frontmost app (HID)");
    closeAndHide();
}

void sendAndUnlock() {
    sendCommandV();
    scheduleUnlock(postUnlockDelay);
    platform().mainQueue().after(postUnlockDelay, endSequence);
}

void finishPaste(bool switched) {
    if (!switched)
        log("⚠️ Frontmost app did not switch to target in time. Sending paste anyway as fallback.");
    const auto frontmost = platform().workspace().frontmostApplication();
    log("🔎 Frontmost before paste: " + shortName(frontmost) + " (" + bundleIdentifier(frontmost).value_or("nil") + ")");
    sendAndUnlock();
}

/// Two processes that are not known are not the same one.
bool isProcess(const RunningApplicationHandle& app, std::int32_t processIdentifier) {
    return app && processIdentifier != unknownProcess && app->processIdentifier() == processIdentifier;
}

/// Completes with true at the first check that finds the application in front, or with false at the first one at or
/// after the deadline, which is a time of the main queue's `uptime`.
void pollFrontmost(const std::optional<std::string>& targetIdentifier, std::int32_t processIdentifier, double deadline,
                   double interval, const std::function<void(bool)>& completion) {
    const auto frontmost = platform().workspace().frontmostApplication();
    if (bundleIdentifier(frontmost) == targetIdentifier || isProcess(frontmost, processIdentifier)) {
        log("✅ Frontmost switched to target: " + shortName(frontmost));
        completion(true);
        return;
    }
    if (platform().mainQueue().uptime() >= deadline) {
        completion(false);
        return;
    }
    platform().mainQueue().after(
        interval, [=] { pollFrontmost(targetIdentifier, processIdentifier, deadline, interval, completion); });
}

void waitForTargetAndPaste(const RunningApplicationHandle& target) {
    if (!target) {
        log("⚠️ No target app resolved. Sending paste as fallback.");
        sendAndUnlock();
        return;
    }
    log("⏳ Waiting for frontmost to become: " + fullName(target));
    const double deadline = platform().mainQueue().uptime() + waitLimit;
    pollFrontmost(target->bundleIdentifier(), target->processIdentifier(), deadline, pollInterval, finishPaste);
}

RunningApplicationHandle resolveWithDelegate(FocusDelegate& delegate, const RunningApplicationHandle& frontmost) {
    if (auto target = delegate.lastAppFocus()) {
        log("🎯 Using lastAppFocus as target: " + fullName(target));
        if (!delegate.previousApp()) {
            delegate.setPreviousApp(target);
            log("🔗 Synced previousApp from resolved target.");
        }
        return target;
    }
    if (auto target = delegate.previousApp()) {
        log("🎯 Using previousApp as target: " + fullName(target));
        return target;
    }
    if (!isPasteTarget(frontmost))
        return nullptr;
    delegate.setLastAppFocus(frontmost);
    delegate.setPreviousApp(frontmost);
    log("📌 Fallback target from current frontmost: " + shortName(frontmost));
    return frontmost;
}

RunningApplicationHandle resolvePasteTarget() {
    auto frontmost = platform().workspace().frontmostApplication();
    if (auto* const delegate = focusDelegate())
        return resolveWithDelegate(*delegate, frontmost);
    if (!isPasteTarget(frontmost))
        return nullptr;
    log("📌 Fallback target (no AppDelegate): " + shortName(frontmost));
    return frontmost;
}

void activateTarget() {
    if (auto* const delegate = focusDelegate())
        delegate->activatePreviousApp();
}

}  // namespace

void PasteService::paste() {
    if (isPasting)
        return;
    isPasting = true;
    if (!AccessibilityPermissionHelper::checkAccessibilityPermission()) {
        log("❌ Accessibility permission not granted. Cannot paste.");
        scheduleUnlock(callUnlockDelay);
        return;
    }
    auto& queue = platform().mainQueue();
    const auto target = resolvePasteTarget();
    ++sequencesUnderWay;
    queue.after(closingDelay, closeAndHide);
    queue.after(activationDelay, activateTarget);
    queue.after(waitDelay, [target] { waitForTargetAndPaste(target); });
    scheduleUnlock(callUnlockDelay);
}

void PasteService::afterPaste(std::function<void()> step) {
    if (sequencesUnderWay > 0)
        stepsAfterPaste.push_back(std::move(step));
    else
        step();
}

}  // namespace brindle
