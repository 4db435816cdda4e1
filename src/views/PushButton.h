#pragma once

#include <optional>

#include "views/Control.h"
#include "views/Fonts.h"

namespace brindle {

/// A filled button with a title. Its size is up to whoever places it.
class PushButton final : public Control {
    Q_OBJECT
public:
    enum class Kind {
        plain,        ///< on the surface
        plainRaised,  ///< in a dialog
        primary,
        destructive
    };
    struct Shape {
        double radius = 6;
        std::optional<TextStyle> style = std::nullopt;  ///< none: semibold when filled in colour, else regular
    };

    PushButton(Kind kind, const QString& title, QWidget* parent = nullptr) : PushButton(kind, title, Shape{}, parent) {}
    PushButton(Kind kind, const QString& title, Shape shape, QWidget* parent = nullptr);

protected:
    void paint(QPainter& painter) override;

private:
    Kind kind_;
    double radius_;
    TextStyle style_;
};

}  // namespace brindle
