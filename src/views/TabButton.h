#pragma once

#include <cstddef>
#include <functional>
#include <optional>

#include "views/Control.h"
#include "views/Fonts.h"

namespace brindle {

/// One tab of the strip: a title, and behind it in parentheses how many entries it stands for.
class TabButton final : public Control {
    Q_OBJECT
public:
    TabButton(std::function<void()> action, QWidget* parent = nullptr);

    /// Any text is a title. It is shown as one line, and its end left out where it is too long for a tab.
    void show(const QString& title, std::optional<std::size_t> count, bool isSelected);

    [[nodiscard]] const QString& title() const { return title_; }
    [[nodiscard]] std::optional<std::size_t> count() const { return count_; }
    [[nodiscard]] bool isSelected() const { return isSelected_; }
    [[nodiscard]] double exactWidth() const;  ///< points that its content and padding take

protected:
    void paint(QPainter& painter) override;

private:
    [[nodiscard]] TextStyle titleStyle() const { return isSelected_ ? TextStyle::bodyMedium : TextStyle::body; }
    [[nodiscard]] QString countText() const;
    void measure();

    QString title_;
    std::optional<std::size_t> count_;
    bool isSelected_ = false;
    QString shownTitle_;
    double titleWidth_ = 0;
    double countWidth_ = 0;
};

}  // namespace brindle
