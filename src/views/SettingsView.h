#pragma once

#include <QWidget>

#include "base/Published.h"
#include "platform/ColorSchemes.h"
#include "views/Label.h"
#include "views/SegmentedControl.h"
#include "views/Switch.h"
#include "views/SymbolButton.h"

namespace brindle {

class SettingsManager;

/// The panel with the user's settings. Each control writes through the settings manager at once.
class SettingsView final : public QWidget {
    Q_OBJECT
public:
    /// What is drawn of the panel's 350 × 250 in a popover of 350, 20 points from its edges.
    static constexpr QSize fixedSize{310, 250};
    static constexpr int cornerRadius = 12;  ///< points

    /// The close button clears the flag.
    SettingsView(SettingsManager& settingsManager, Published<bool>& isPresented, QWidget* parent = nullptr);

    void setColorScheme(ColorScheme scheme);
    /// Shows what the settings are by now; a size that is not offered chooses no segment.
    void refresh();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    SettingsManager& settingsManager_;
    ColorScheme scheme_ = ColorScheme::dark;
    Label title_;
    SymbolButton closeButton_;
    Label sizeLabel_;
    SegmentedControl sizeControl_;
    Label loginLabel_;
    Switch loginSwitch_;
    Label themeLabel_;
    SegmentedControl themeControl_;
};

}  // namespace brindle
