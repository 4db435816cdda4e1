#pragma once

#include <QWidget>

#include "platform/ColorSchemes.h"

namespace brindle {

/// The hint below the list.
class FooterView final : public QWidget {
public:
    explicit FooterView(QWidget* parent = nullptr);

    void setColorScheme(ColorScheme scheme);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    ColorScheme scheme_ = ColorScheme::dark;
};

}  // namespace brindle
