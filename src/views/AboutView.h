#pragma once

#include <QImage>

#include "views/Label.h"
#include "views/PushButton.h"
#include "views/SheetView.h"
#include "views/SymbolButton.h"

namespace brindle {

/// The program's icon, name and version, and the way to its page.
class AboutView final : public SheetView {
    Q_OBJECT
public:
    static constexpr QSize fixedSize{320, 420};

    explicit AboutView(std::function<void()> dismiss);

    void setColorScheme(ColorScheme scheme) override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void placeParts();
    [[nodiscard]] int iconSize() const;  ///< points

    QImage icon_;  ///< null: there is no icon file
    SymbolButton closeButton_;
    Label name_;
    Label version_;
    PushButton learnMore_;
};

}  // namespace brindle
