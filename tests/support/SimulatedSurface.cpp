#include "support/SimulatedSurface.h"

#include <algorithm>
#include <utility>

#include "support/Text.h"

namespace brindle::test {

namespace {

std::string written(Size size) {
    return decimal(size.width) + "x" + decimal(size.height);
}

std::string written(Point point) {
    return decimal(point.x) + "," + decimal(point.y);
}

}  // namespace

class SimulatedStatusBar::Item final : public StatusItem, public StatusButton {
public:
    explicit Item(SimulatedStatusBar& bar) : bar_(bar) { bar_.item_ = this; }
    ~Item() override { bar_.item_ = nullptr; }

    StatusButton* button() override { return bar_.hasButton ? this : nullptr; }
    void setMenu(std::optional<Menu> next) override { menu = std::move(next); }
    void setHostMenu(std::function<Menu()> makeMenu) override { makeHostMenu = std::move(makeMenu); }

    Rect bounds() const override { return bar_.bounds; }
    void setImage(const Image& image) override {
        bar_.journal_.add("status icon " + image.path + " " + written(image.size) +
                          (image.isTemplate ? " template" : ""));
    }
    void setAction(std::function<void()> next) override { action = std::move(next); }
    void sendActionOn(std::uint64_t next) override { mask = next; }
    void performClick() override {
        if (!menu) {
            action();
            return;
        }
        bar_.openMenu_ = *menu;
        for (const MenuItem& item : *menu)
            bar_.journal_.add("menu: " + item.title + " (" + item.keyEquivalent + ")");
    }

    std::optional<Menu> menu;
    std::function<Menu()> makeHostMenu;
    std::function<void()> action;
    std::uint64_t mask = 0;

private:
    SimulatedStatusBar& bar_;
};

std::unique_ptr<StatusItem> SimulatedStatusBar::createStatusItem(double length) {
    journal_.add("status item " + decimal(length));
    return std::make_unique<Item>(*this);
}

void SimulatedStatusBar::click(EventType button) {
    const auto mask = button == EventType::rightMouseUp ? rightMouseUpMask : leftMouseUpMask;
    if ((item_->mask & mask) == 0)
        return;
    application_.event = button;
    item_->performClick();
    application_.event = EventType::other;
}

void SimulatedStatusBar::choose(const std::string& title) {
    const Menu menu = std::exchange(openMenu_, {});
    const auto chosen = std::ranges::find(menu, title, &MenuItem::title);
    if (chosen != menu.end())
        chosen->action();
}

Menu SimulatedStatusBar::hostMenu() const {
    return item_->makeHostMenu();
}

void SimulatedPopover::setContentSize(Size points) {
    frame_.size = points;
    journal_.add("popover size " + written(points));
}

void SimulatedPopover::setBehavior(PopoverBehavior behavior) {
    isTransient_ = behavior == PopoverBehavior::transient;
    journal_.add("popover behavior " + std::to_string(static_cast<int>(behavior)));
}

void SimulatedPopover::setAnimates(bool animates) {
    journal_.add(animates ? "popover animates" : "popover does not animate");
}

void SimulatedPopover::setContent(std::unique_ptr<PopoverContent> content) {
    content_ = std::move(content);
    journal_.add("popover content");
}

void SimulatedPopover::show(Rect anchor, RectEdge preferredEdge) {
    isShown_ = true;
    frame_.origin = {anchor.origin.x, anchor.origin.y + anchor.size.height};
    journal_.add("popover shown at " + written(frame_.origin) + " edge " +
                 std::to_string(static_cast<int>(preferredEdge)));
}

void SimulatedPopover::performClose() {
    isShown_ = false;
    journal_.add("popover closed");
}

std::optional<Rect> SimulatedPopover::windowFrame() const {
    return content_ ? std::optional(frame_) : std::nullopt;
}

void SimulatedPopover::closeByItself() {
    if (!isShown_ || !isTransient_)
        return;
    isShown_ = false;
    journal_.add("popover closed by itself");
}

SimulatedPopovers::SimulatedPopovers(Journal& journal, SimulatedWorkspace& workspace,
                                     const SimulatedOwnApplication& application)
    : journal_(journal),
      focus_(workspace.onDidActivateApplication([this, &application](const RunningApplicationHandle& app) {
          if (popover && app != application.self)
              popover->closeByItself();
      })) {}

std::unique_ptr<Popover> SimulatedPopovers::createPopover() {
    return std::make_unique<SimulatedPopover>(journal_, popover);
}

}  // namespace brindle::test
