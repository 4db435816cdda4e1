#pragma once

#include <functional>
#include <memory>

#include "base/Signal.h"
#include "platform/Popover.h"
#include "platform/StatusBar.h"
#include "services/FocusDelegate.h"

namespace brindle {

class ClipboardMonitor;
class CyclingPasteManager;
class HistoryManager;
class SettingsManager;

/// Creates and owns everything that lives as long as the process, keeps track of the application to paste into, and
/// runs the status item and the popover. Main thread. Made by `std::make_shared`: what others keep holds it weakly.
class AppDelegate final : public FocusDelegate, public std::enable_shared_from_this<AppDelegate> {
public:
    /// Builds what the popover shows, on the three managers.
    using MakeContent =
        std::function<std::unique_ptr<PopoverContent>(HistoryManager&, ClipboardMonitor&, SettingsManager&)>;

    /// Everything stays empty until launch has finished.
    explicit AppDelegate(MakeContent makeContent);
    ~AppDelegate() override;

    void applicationDidFinishLaunching();

    // Focus tracking
    void handleDidActivateApp(const RunningApplicationHandle& app);
    void storePreviousApp();
    void activatePreviousApp() override;
    [[nodiscard]] const RunningApplicationHandle& previousApp() const override { return previousApp_; }
    void setPreviousApp(RunningApplicationHandle app) override { previousApp_ = std::move(app); }
    [[nodiscard]] const RunningApplicationHandle& lastAppFocus() const override { return lastAppFocus_; }
    void setLastAppFocus(RunningApplicationHandle app) override { lastAppFocus_ = std::move(app); }

    // Status item and popover
    void handleStatusItemClick();
    void togglePopover();
    /// The same for what the user does. An opening waits until a paste under way has gone out: the popover would close
    /// it or, in front by then, take its chord.
    void togglePopoverAfterPaste();
    [[nodiscard]] bool isPopoverShown() const override;
    void performClosePopover() override;
    void closePopover() override;
    void removeGlobalMouseUpMonitor() override;
    void quitApp();

    [[nodiscard]] HistoryManager* historyManager() const { return historyManager_.get(); }
    [[nodiscard]] ClipboardMonitor* clipboardMonitor() const { return clipboardMonitor_.get(); }
    [[nodiscard]] SettingsManager* settingsManager() const { return settingsManager_.get(); }
    [[nodiscard]] bool hasGlobalMouseUpMonitor() const { return static_cast<bool>(globalMouseUpMonitor_); }

private:
    void createPopover();
    void createStatusItem();
    void handleOutsideClick();
    [[nodiscard]] StatusButton* statusButton() const;
    [[nodiscard]] Menu makeQuitMenu();
    /// The operation as an action that may outlive this delegate and then does nothing.
    [[nodiscard]] std::function<void()> weakly(void (AppDelegate::*operation)());

    MakeContent makeContent_;
    // In the order of creation: the popover's views watch the managers and go first.
    std::unique_ptr<SettingsManager> settingsManager_;
    std::unique_ptr<HistoryManager> historyManager_;
    std::unique_ptr<ClipboardMonitor> clipboardMonitor_;
    std::shared_ptr<CyclingPasteManager> cyclingPasteManager_;
    std::unique_ptr<Popover> popover_;
    std::unique_ptr<StatusItem> statusItem_;
    RunningApplicationHandle previousApp_;
    RunningApplicationHandle lastAppFocus_;
    Subscription activationObserver_;
    Subscription globalMouseUpMonitor_;
};

}  // namespace brindle
