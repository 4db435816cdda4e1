#pragma once

#include "views/Control.h"

namespace brindle {

/// On or off; `clicked` tells that the user turned it.
class Switch final : public Control {
    Q_OBJECT
public:
    explicit Switch(const QString& name, QWidget* parent = nullptr);

protected:
    void paint(QPainter& painter) override;
};

}  // namespace brindle
