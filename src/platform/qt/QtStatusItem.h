#pragma once

#include <QMenu>
#include <QPointer>
#include <QSystemTrayIcon>
#include <QTimer>
#include <memory>

#include "platform/qt/QtStatusBar.h"
#include "platform/qt/TrayHosts.h"

namespace brindle {

/// An icon in whichever tray there is, and its button. Without any tray the button is there all the same.
class QtStatusItem final : public StatusItem, public StatusButton {
public:
    explicit QtStatusItem(StatusBarContext& context);

    [[nodiscard]] StatusButton* button() override { return this; }
    void setMenu(std::optional<Menu> menu) override { menu_ = std::move(menu); }
    void setHostMenu(std::function<Menu()> makeMenu) override;

    [[nodiscard]] Rect bounds() const override;
    void setImage(const Image& image) override;
    void setAction(std::function<void()> action) override { action_ = std::move(action); }
    void sendActionOn(std::uint64_t mask) override { mask_ = mask; }
    void performClick() override;

private:
    void createIcon(TrayKind kind);
    void handleActivation(QSystemTrayIcon::ActivationReason reason);
    void awaitRelease();
    void handleClick();
    void showMenu();
    void updateIcon();
    [[nodiscard]] ColorScheme menuScheme() const;  ///< that of the program's windows
    [[nodiscard]] ColorScheme panelScheme() const;
    [[nodiscard]] QRect embeddedFrame() const;  ///< empty: not in an embedding tray

    StatusBarContext& context_;
    Image image_;
    std::string shownImage_;
    ColorScheme shownPanel_ = ColorScheme::dark;
    std::function<void()> action_;
    std::uint64_t mask_ = leftMouseUpMask;
    std::optional<Menu> menu_;
    TrayKind kind_ = TrayKind::embedding;
    std::optional<QPoint> lastClick_;
    QPointer<QMenu> openMenu_;
    QMenu hostMenu_;
    QTimer docking_;
    std::optional<EventType> click_;  ///< to be handled when the button is up
    QTimer release_;
    std::unique_ptr<QSystemTrayIcon> icon_;
    TrayHosts hosts_;
    Subscription colorScheme_;
    Subscription embeddingTray_;
};

}  // namespace brindle
