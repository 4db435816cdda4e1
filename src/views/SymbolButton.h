#pragma once

#include "views/Control.h"

namespace brindle {

/// A button that is only a symbol. Its size is fixed by its kind.
class SymbolButton final : public Control {
    Q_OBJECT
public:
    enum class Kind {
        menu,     ///< 30 × 30
        addList,  ///< 30 × 28
        close     ///< 24 × 24: the symbol's 20 and 2 around it for the focus ring
    };

    SymbolButton(Kind kind, const QString& name, QWidget* parent = nullptr);

protected:
    void paint(QPainter& painter) override;

private:
    Kind kind_;
};

}  // namespace brindle
