#include "services/CyclingPasteManager.h"

#include "base/Log.h"
#include "platform/MainQueue.h"
#include "platform/Pasteboard.h"
#include "platform/Workspace.h"
#include "services/AccessibilityPermissionHelper.h"
#include "services/FocusDelegate.h"
#include "services/HistoryManager.h"
#include "services/PasteService.h"
#include "services/PasteTarget.h"

namespace brindle {

namespace {

constexpr VirtualKey cyclingKey = VirtualKey::v;
constexpr std::uint64_t cyclingFlags = eventFlags::command | eventFlags::control;

}  // namespace

std::shared_ptr<CyclingPasteManager> CyclingPasteManager::create(HistoryManager& historyManager) {
    std::shared_ptr<CyclingPasteManager> manager(new CyclingPasteManager(historyManager));
    manager->setupEventTap();
    return manager;
}

CyclingPasteManager::CyclingPasteManager(HistoryManager& historyManager) : historyManager_(historyManager) {}

void CyclingPasteManager::setupEventTap() {
    tap_ = platform().eventTaps().create({.key = cyclingKey, .flags = cyclingFlags},
                                         [this](const TappedKey& pressed) { return handleTapEvent(pressed); });
    if (!tap_) {
        log("Failed to create event tap");
        return;
    }
    tap_->enable(true);
}

TapVerdict CyclingPasteManager::handleTapEvent(const TappedKey& pressed) {
    if (pressed.key != cyclingKey || (pressed.flags & cyclingFlags) != cyclingFlags)
        return TapVerdict::passOn;
    platform().mainQueue().post([weak = weak_from_this()] {
        if (const auto self = weak.lock())
            self->cyclePaste();
    });
    return TapVerdict::remove;
}

void CyclingPasteManager::rememberFrontmost() {
    auto* const delegate = focusDelegate();
    const auto frontmost = platform().workspace().frontmostApplication();
    if (!delegate || !isPasteTarget(frontmost))
        return;
    delegate->setPreviousApp(frontmost);
    log("📌 [Cycling] previousApp set to: " + shortName(frontmost));
}

void CyclingPasteManager::cyclePaste() {
    if (!AccessibilityPermissionHelper::checkAccessibilityPermission()) {
        log("❌ Accessibility permission not granted. Cycling paste aborted.");
        return;
    }
    const Date now = platform().mainQueue().now();
    if (now - lastPasteTime_ > resetInterval)
        currentIndex_ = 0;
    const auto& history = historyManager_.history().value();
    if (history.empty())
        return;
    if (currentIndex_ >= history.size())
        currentIndex_ = 0;
    const SharedText content = history[currentIndex_].content;
    rememberFrontmost();
    platform().pasteboard().clearContents();
    platform().pasteboard().setString(content);
    PasteService::paste();
    lastPasteTime_ = now;
    ++currentIndex_;
}

}  // namespace brindle
