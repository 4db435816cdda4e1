#pragma once

#include "platform/Popover.h"
#include "platform/StatusBar.h"
#include "support/Journal.h"
#include "support/SimulatedDesktop.h"

/// What a simulated desktop shows of this program: the status item and the popover.
namespace brindle::test {

class SimulatedStatusBar final : public StatusBar {
public:
    SimulatedStatusBar(Journal& journal, SimulatedOwnApplication& application)
        : journal_(journal), application_(application) {}

    std::unique_ptr<StatusItem> createStatusItem(double length) override;

    /// The user clicks the icon.
    void click(EventType button);
    /// The user chooses from the menu that a right click opened.
    void choose(const std::string& title);
    /// What a tray that draws the menu itself would show.
    Menu hostMenu() const;

    bool hasButton = true;
    Rect bounds = {{1000, 0}, {24, 24}};

private:
    class Item;
    Journal& journal_;
    SimulatedOwnApplication& application_;
    Item* item_ = nullptr;
    Menu openMenu_;
};

class SimulatedPopover final : public Popover {
public:
    SimulatedPopover(Journal& journal, SimulatedPopover*& place) : journal_(journal), place_(place) { place_ = this; }
    ~SimulatedPopover() override { place_ = nullptr; }

    void setContentSize(Size points) override;
    void setBehavior(PopoverBehavior behavior) override;
    void setAnimates(bool animates) override;
    void setContent(std::unique_ptr<PopoverContent> content) override;
    bool isShown() const override { return isShown_; }
    void show(Rect anchor, RectEdge preferredEdge) override;
    void performClose() override;
    std::optional<Rect> windowFrame() const override;
    void makeKeyWindow() override { journal_.add("popover has the keyboard"); }

    /// What a transient popover does when the focus goes to another program.
    void closeByItself();
    PopoverContent* content() const { return content_.get(); }

private:
    Journal& journal_;
    SimulatedPopover*& place_;
    std::unique_ptr<PopoverContent> content_;
    Rect frame_;
    bool isTransient_ = false;
    bool isShown_ = false;
};

class SimulatedPopovers final : public Popovers {
public:
    SimulatedPopovers(Journal& journal, SimulatedWorkspace& workspace, const SimulatedOwnApplication& application);
    std::unique_ptr<Popover> createPopover() override;

    SimulatedPopover* popover = nullptr;  ///< the one there is

private:
    Journal& journal_;
    Subscription focus_;
};

}  // namespace brindle::test
