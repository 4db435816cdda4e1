#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "platform/Geometry.h"
#include "platform/Image.h"
#include "platform/Menu.h"

namespace brindle {

constexpr std::uint64_t leftMouseUpMask = 0x04;
constexpr std::uint64_t rightMouseUpMask = 0x10;
constexpr double variableStatusItemLength = -1;

/// The clickable part of a status item.
class StatusButton {
public:
    virtual ~StatusButton() = default;

    /// Where it is on the desktop: the icon where the tray tells, else the place of the last click on it, else a spot
    /// at the top right of the screen that has the pointer.
    [[nodiscard]] virtual Rect bounds() const = 0;

    virtual void setImage(const Image& image) = 0;
    /// Runs once a click, after the mouse monitor's handlers have been spared that click.
    virtual void setAction(std::function<void()> action) = 0;
    /// Which mouse events run the action; `Application::currentEvent` tells them apart.
    virtual void sendActionOn(std::uint64_t mask) = 0;
    /// As if it were clicked: shows the status item's menu when there is one, else runs the action. A menu is shown
    /// without waiting for its end.
    virtual void performClick() = 0;
};

/// An icon in the desktop's tray.
class StatusItem {
public:
    virtual ~StatusItem() = default;
    [[nodiscard]] virtual StatusButton* button() = 0;  ///< null: this desktop gives none
    /// The menu for the next `performClick`; none takes it away (one that is open stays until it is closed).
    virtual void setMenu(std::optional<Menu> menu) = 0;
    /// For trays that draw the menu themselves and report no right click: asked for at once, and never shown elsewhere.
    virtual void setHostMenu(std::function<Menu()> makeMenu) = 0;
};

class StatusBar {
public:
    virtual ~StatusBar() = default;
    [[nodiscard]] virtual std::unique_ptr<StatusItem> createStatusItem(double length) = 0;
};

}  // namespace brindle
