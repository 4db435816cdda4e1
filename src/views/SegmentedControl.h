#pragma once

#include <QWidget>
#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

#include "platform/ColorSchemes.h"

namespace brindle {

/// A few values side by side of which at most one is chosen. To the keyboard it is one thing: the left and right arrow
/// keys choose. To assistive technology it is a group of radio buttons.
class SegmentedControl final : public QWidget {
    Q_OBJECT
public:
    /// `choose` hears of every choice by mouse, key or assistive technology.
    SegmentedControl(const QString& name, const std::vector<QString>& titles,
                     const std::function<void(std::size_t)>& choose, QWidget* parent = nullptr);

    void setColorScheme(ColorScheme scheme);
    void setChosen(std::optional<std::size_t> index);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    class Segment;

    ColorScheme scheme_ = ColorScheme::dark;
    std::vector<Segment*> segments_;
};

}  // namespace brindle
