#pragma once

#include <QWidget>
#include <memory>
#include <optional>
#include <vector>

#include "base/Signal.h"
#include "platform/ColorSchemes.h"
#include "views/ContentState.h"

namespace brindle {

class ClipboardMonitor;
class FooterView;
class HeaderView;
class HistoryFilter;
class HistoryView;
class HistoryManager;
class Presentations;
class SettingsManager;
class TabsView;

/// What the popover hosts: header, tabs, list and footer, and what is presented over them. It owns the popover's state.
/// Any number of changes in one turn of the main loop are one rebuild in the next.
class ContentView final : public QWidget {
    Q_OBJECT
public:
    static constexpr QSize fixedSize{350, 500};

    ContentView(HistoryManager& historyManager, ClipboardMonitor& clipboardMonitor, SettingsManager& settingsManager,
                QWidget* parent = nullptr);
    ~ContentView() override;

    [[nodiscard]] ContentState& state() { return state_; }
    [[nodiscard]] ColorScheme effectiveScheme() const;  ///< of the popover, by the stored theme
    [[nodiscard]] ColorScheme preferredScheme() const;  ///< of the list and what is presented, by the setting

Q_SIGNALS:
    void rebuilt();  ///< everything shows the state by now

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void observe();
    void scheduleRebuild();
    void rebuild();
    [[nodiscard]] std::optional<HistoryFilter> filter() const;

    HistoryManager& historyManager_;
    SettingsManager& settingsManager_;
    ContentState state_;
    bool isRebuildScheduled_ = false;

    // Gone before the state that they refer to.
    std::unique_ptr<HeaderView> header_;
    std::unique_ptr<TabsView> tabs_;
    std::unique_ptr<HistoryView> list_;
    std::unique_ptr<FooterView> footer_;
    std::unique_ptr<Presentations> presentations_;
    std::vector<Subscription> observers_;
};

}  // namespace brindle
