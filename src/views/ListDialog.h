#pragma once

#include <QWidget>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/Published.h"
#include "platform/ColorSchemes.h"
#include "views/FieldBox.h"
#include "views/Label.h"
#include "views/PushButton.h"

namespace brindle {

/// A question about a list, over the whole popover: a card with a title, a text field or a message, "Cancel" and a
/// button that acts. Return chooses that one, unless another button has the keyboard, and Escape cancels; no key leaves
/// the dialog.
class ListDialog final : public QWidget {
    Q_OBJECT
public:
    struct Question {
        QString title;
        Published<std::string>* text = nullptr;  ///< what the field edits; none: there is a message
        QString message;
        QString actionTitle;
        PushButton::Kind actionKind = PushButton::Kind::primary;
    };

    /// Fills `popover`. Either button clears the flag, once, before the action runs.
    ListDialog(const Question& question, Published<bool>& isPresented, std::function<void()> action, QWidget& popover);

    void setColorScheme(ColorScheme scheme);
    /// Shows it with the keyboard in the field, whose text is selected, or else on "Cancel", which shows it if that is
    /// the reason.
    void open(Qt::FocusReason reason);

protected:
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void placeParts();
    void cancel();
    void act();
    [[nodiscard]] std::vector<QWidget*> stops();

    Published<bool>& isPresented_;
    std::function<void()> action_;
    QRect card_;
    ColorScheme scheme_ = ColorScheme::dark;
    Label title_;
    std::unique_ptr<FieldBox> field_;
    std::unique_ptr<Label> message_;
    PushButton cancelButton_;
    PushButton actionButton_;
};

}  // namespace brindle
