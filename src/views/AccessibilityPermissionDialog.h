#pragma once

#include "views/DraggableAppIcon.h"
#include "views/Label.h"
#include "views/PushButton.h"
#include "views/SheetView.h"

namespace brindle {

/// What the user can do when the desktop does not let this program paste, with the way to the desktop's settings.
class AccessibilityPermissionDialog final : public SheetView {
    Q_OBJECT
public:
    static constexpr QSize fixedSize{480, 600};

    explicit AccessibilityPermissionDialog(std::function<void()> dismiss);

    void setColorScheme(ColorScheme scheme) override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void openSettings();

    Label title_;
    Label instruction_;
    Label hand_;
    DraggableAppIcon icon_;
    PushButton done_;
};

}  // namespace brindle
