#pragma once

#include "platform/Popover.h"
#include "platform/StatusBar.h"
#include "support/SimulatedDesktop.h"

/// What a simulated desktop shows of this program: the status item and the popover.
namespace brindle::test {

class SimulatedStatusBar final : public StatusBar {
public:
    SimulatedStatusBar(Journal& journal, SimulatedOwnApplication& application)
        : journal_(journal), application_(application) {}

    std::unique_ptr<StatusItem> createStatusItem(double length) override {
        journal_.add(printed("status item %g", length));
        return std::make_unique<Item>(*this);
    }

    /// The user clicks the icon.
    void click() {
        application_.event = EventType::leftMouseUp;
        item_->performClick();
        application_.event = EventType::other;
    }

private:
    struct Item final : StatusItem, StatusButton {
        explicit Item(SimulatedStatusBar& itsBar) : bar(itsBar) { bar.item_ = this; }
        ~Item() override { bar.item_ = nullptr; }

        StatusButton* button() override { return this; }
        void setMenu(std::optional<Menu> /*menu*/) override {}
        void setHostMenu(std::function<Menu()> /*makeMenu*/) override {}
        Rect bounds() const override { return {{1000, 0}, {24, 24}}; }
        void setImage(const Image& image) override {
            bar.journal_.add("status icon " + image.path + printed(" %gx%g", image.size.width, image.size.height) +
                             (image.isTemplate ? " template" : ""));
        }
        void setAction(std::function<void()> next) override { action = std::move(next); }
        void sendActionOn(std::uint64_t /*mask*/) override {}
        void performClick() override { action(); }

        SimulatedStatusBar& bar;
        std::function<void()> action;
    };

    Journal& journal_;
    SimulatedOwnApplication& application_;
    Item* item_ = nullptr;
};

class SimulatedPopover final : public Popover {
public:
    SimulatedPopover(Journal& journal, SimulatedPopover*& place) : journal_(journal), place_(place) { place_ = this; }
    ~SimulatedPopover() override { place_ = nullptr; }

    void setContentSize(Size points) override {
        frame_.size = points;
        journal_.add(printed("popover size %gx%g", points.width, points.height));
    }
    void setBehavior(PopoverBehavior behavior) override {
        journal_.add(printed("popover behavior %d", static_cast<int>(behavior)));
    }
    void setAnimates(bool animates) override {
        journal_.add(animates ? "popover animates" : "popover does not animate");
    }
    void setContent(std::unique_ptr<PopoverContent> content) override {
        content_ = std::move(content);
        journal_.add("popover content");
    }
    bool isShown() const override { return isShown_; }
    void show(Rect anchor, RectEdge edge) override {
        isShown_ = true;
        frame_.origin = {anchor.origin.x, anchor.origin.y + anchor.size.height};
        journal_.add(
            printed("popover shown at %g,%g edge %d", frame_.origin.x, frame_.origin.y, static_cast<int>(edge)));
    }
    void performClose() override {
        isShown_ = false;
        journal_.add("popover closed");
    }
    std::optional<Rect> windowFrame() const override { return content_ ? std::optional(frame_) : std::nullopt; }
    void makeKeyWindow() override { journal_.add("popover has the keyboard"); }

    /// What a transient popover does when the focus goes to another program.
    void closeByItself() {
        if (std::exchange(isShown_, false))
            journal_.add("popover closed by itself");
    }

private:
    Journal& journal_;
    SimulatedPopover*& place_;
    std::unique_ptr<PopoverContent> content_;
    Rect frame_;
    bool isShown_ = false;
};

class SimulatedPopovers final : public Popovers {
public:
    SimulatedPopovers(Journal& journal, SimulatedWorkspace& workspace, const SimulatedOwnApplication& application)
        : journal_(journal),
          focus_(workspace.onDidActivateApplication([this, &application](const RunningApplicationHandle& app) {
              if (popover && app != application.self)
                  popover->closeByItself();
          })) {}
    std::unique_ptr<Popover> createPopover() override { return std::make_unique<SimulatedPopover>(journal_, popover); }

    SimulatedPopover* popover = nullptr;  ///< the one there is

private:
    Journal& journal_;
    Subscription focus_;
};

}  // namespace brindle::test
