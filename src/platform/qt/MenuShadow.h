#pragma once

#include <QObject>
#include <memory>

#include "platform/ColorSchemes.h"

class QMenu;

namespace brindle {

/// A menu's shadow, as a window of its own below it: in the menu's own window it would be a part of the menu to the
/// pointer and to the toolkit's placing. It takes no input and is unknown to the window manager. For desktops that
/// blend windows; lives and shows as long as the menu does.
class MenuShadow final : public QObject {
    Q_OBJECT
public:
    MenuShadow(QMenu& menu, double cornerRadius, ColorScheme scheme);
    ~MenuShadow() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    class Window;

    void follow();

    QMenu& menu_;
    std::unique_ptr<Window> window_;
};

}  // namespace brindle
