#pragma once

#include <QWidget>
#include <functional>

#include "platform/ColorSchemes.h"

namespace brindle {

/// The content of a sheet: of a fixed size, opaque, and able to ask for its own dismissal.
class SheetView : public QWidget {
    Q_OBJECT
public:
    SheetView(const QString& name, QSize size, std::function<void()> dismiss);

    virtual void setColorScheme(ColorScheme scheme);

protected:
    [[nodiscard]] ColorScheme colorScheme() const { return scheme_; }
    void dismiss() const { dismiss_(); }
    void paintEvent(QPaintEvent* event) override;

private:
    std::function<void()> dismiss_;
    ColorScheme scheme_ = ColorScheme::dark;
};

}  // namespace brindle
