#include "app/AppDelegate.h"

#include "platform/Bundle.h"
#include "platform/MainQueue.h"
#include "platform/MouseMonitor.h"
#include "services/PasteService.h"

namespace brindle {

namespace {

constexpr Size popoverSize = {350, 500};
constexpr Size statusIconSize = {18, 18};

std::string statusIconPath() {
    auto icon = platform().bundle().imageNamed("AppIconOutline");
    if (!icon)
        icon = platform().bundle().symbolNamed("doc.on.clipboard");
    return icon.value_or(std::string(actionImageName));
}

}  // namespace

void AppDelegate::createPopover() {
    popover_ = platform().popovers().createPopover();
    popover_->setContentSize(popoverSize);
    popover_->setBehavior(PopoverBehavior::transient);
    popover_->setAnimates(false);
    popover_->setContent(makeContent_(*historyManager_, *clipboardMonitor_, *settingsManager_));
}

void AppDelegate::createStatusItem() {
    statusItem_ = platform().statusBar().createStatusItem(variableStatusItemLength);
    statusItem_->setHostMenu([this] { return makeQuitMenu(); });
    auto* const button = statusItem_->button();
    if (!button)
        return;
    button->setImage({statusIconPath(), statusIconSize, true});
    button->setAction(weakly(&AppDelegate::handleStatusItemClick));
    button->sendActionOn(leftMouseUpMask | rightMouseUpMask);
}

StatusButton* AppDelegate::statusButton() const {
    return statusItem_ ? statusItem_->button() : nullptr;
}

Menu AppDelegate::makeQuitMenu() {
    return {{"Quit Brindle", weakly(&AppDelegate::quitApp), "q"}};
}

void AppDelegate::handleStatusItemClick() {
    auto* const button = statusButton();
    if (!button || platform().application().currentEvent() != EventType::rightMouseUp) {
        togglePopoverAfterPaste();
        return;
    }
    statusItem_->setMenu(makeQuitMenu());
    button->performClick();
    statusItem_->setMenu(std::nullopt);
}

void AppDelegate::togglePopover() {
    auto* const button = statusButton();
    if (!button)
        return;
    if (isPopoverShown()) {
        closePopover();
        return;
    }
    storePreviousApp();
    popover_->show(button->bounds(), RectEdge::minY);
    platform().application().activateIgnoringOtherApps();
    if (popover_->windowFrame())
        popover_->makeKeyWindow();
    removeGlobalMouseUpMonitor();
    globalMouseUpMonitor_ = platform().mouseMonitor().addGlobalMonitor(leftMouseUpMask | rightMouseUpMask,
                                                                       weakly(&AppDelegate::handleOutsideClick));
}

void AppDelegate::togglePopoverAfterPaste() {
    if (isPopoverShown()) {
        togglePopover();
        return;
    }
    // A cycling press before this one may still have its step in the queue.
    platform().mainQueue().post([toggle = weakly(&AppDelegate::togglePopover)] { PasteService::afterPaste(toggle); });
}

void AppDelegate::handleOutsideClick() {
    if (!isPopoverShown())
        return;
    const auto frame = popover_->windowFrame();
    if (!frame || !frame->contains(platform().mouseMonitor().mouseLocation()))
        closePopover();
}

bool AppDelegate::isPopoverShown() const {
    return popover_ && popover_->isShown();
}

void AppDelegate::performClosePopover() {
    if (popover_)
        popover_->performClose();
}

void AppDelegate::closePopover() {
    if (isPopoverShown())
        performClosePopover();
    removeGlobalMouseUpMonitor();
}

void AppDelegate::removeGlobalMouseUpMonitor() {
    globalMouseUpMonitor_.reset();
}

}  // namespace brindle
