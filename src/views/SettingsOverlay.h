#pragma once

#include <QPointer>
#include <QWidget>

#include "base/Signal.h"
#include "views/SettingsView.h"

namespace brindle {

/// The settings panel over the content area: a dim layer that closes it when clicked, and above it the panel, which
/// comes in from the bottom edge and leaves over it.
class SettingsOverlay final : public QWidget {
    Q_OBJECT
public:
    enum class Motion { none, slide };
    static constexpr double slideTime = 0.2;  ///< seconds

    SettingsOverlay(SettingsManager& settingsManager, Published<bool>& isPresented, QWidget* parent);

    /// A slide that is under way turns around where it is.
    void setPresented(bool isPresented, Motion motion);
    [[nodiscard]] bool isPresented() const { return isEntering_; }
    void setColorScheme(ColorScheme scheme);
    void refresh() { panel_.refresh(); }

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void releaseFocus();
    void step();
    void showProgress();
    [[nodiscard]] double visiblePart() const;

    Published<bool>& isPresented_;
    ColorScheme scheme_ = ColorScheme::dark;
    SettingsView panel_;
    QPointer<QWidget> focusBefore_;
    bool isEntering_ = false;
    bool isPressed_ = false;
    double progress_ = 0;  ///< of the time that the way in takes
    double steppedAt_ = 0;
    Subscription steps_;
};

}  // namespace brindle
