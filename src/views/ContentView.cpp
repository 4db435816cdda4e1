#include "views/ContentView.h"

#include <QKeyEvent>
#include <QPainter>
#include <QPointer>

#include "platform/DefaultsStore.h"
#include "platform/MainQueue.h"
#include "platform/Platform.h"
#include "services/HistoryManager.h"
#include "services/SettingsManager.h"
#include "views/Animation.h"
#include "views/Appearance.h"
#include "views/FooterView.h"
#include "views/HeaderView.h"
#include "views/HistoryView.h"
#include "views/Palette.h"
#include "views/Presentations.h"
#include "views/TabsView.h"

namespace brindle {

namespace {

// Points.
constexpr QRect headerPlace(0, 0, 350, 64);
constexpr QRect tabsPlace(0, 64, 350, 36);
constexpr QRect dividerPlace(0, 100, 350, 1);
constexpr QRect contentPlace(0, 101, 350, 370);
constexpr QRect footerPlace(0, 471, 350, 29);

constexpr std::string_view themeKey = "appTheme";

std::string storedTheme() {
    return platform().defaults().string(themeKey).value_or("Dark");
}

}  // namespace

ContentView::ContentView(HistoryManager& historyManager, ClipboardMonitor& clipboardMonitor,
                         SettingsManager& settingsManager, QWidget* parent)
    : QWidget(parent),
      historyManager_(historyManager),
      settingsManager_(settingsManager),
      header_(std::make_unique<HeaderView>(state_.searchText, state_.isSearchFocused, state_.showSettings,
                                           state_.showAbout, this)),
      tabs_(std::make_unique<TabsView>(
          TabsView::Bindings{
              .selectedTab = state_.selectedTab,
              .showNewListAlert = state_.showNewListAlert,
              .newListName = state_.newListName,
              .showRenameListAlert = state_.showRenameListAlert,
              .renameListName = state_.renameListName,
              .listToRename = state_.listToRename,
              .showDeleteListAlert = state_.showDeleteListAlert,
              .listToDelete = state_.listToDelete,
          },
          historyManager, this)),
      list_(std::make_unique<HistoryView>(historyManager, clipboardMonitor, state_.searchText, HistoryFilter::all(),
                                          state_.isSearchFocused, state_.showAccessibilityDialog, this)),
      footer_(std::make_unique<FooterView>(this)),
      presentations_(std::make_unique<Presentations>(state_, historyManager, settingsManager, *this, contentPlace)) {
    setFixedSize(fixedSize);
    setAttribute(Qt::WA_OpaquePaintEvent);
    header_->setGeometry(headerPlace);
    tabs_->setGeometry(tabsPlace);
    list_->setGeometry(contentPlace);
    footer_->setGeometry(footerPlace);
    state_.appThemeRaw = storedTheme();
    observe();
    rebuild();
}

ContentView::~ContentView() = default;

void ContentView::observe() {
    const auto follow = [this](const auto& published) {
        observers_.push_back(published.subscribe([this](const auto&) { scheduleRebuild(); }));
    };
    follow(historyManager_.history());
    follow(historyManager_.customLists());
    follow(settingsManager_.maxClipboardItems());
    follow(settingsManager_.appTheme());
    follow(settingsManager_.launchAtLogin());
    follow(state_.appThemeRaw);
    follow(state_.searchText);
    follow(state_.selectedTab);
    for (const auto* flag : {&state_.showSettings, &state_.showAbout, &state_.showAccessibilityDialog,
                             &state_.showNewListAlert, &state_.showRenameListAlert, &state_.showDeleteListAlert})
        follow(*flag);
    observers_.push_back(platform().colorSchemes().onChange([this] { scheduleRebuild(); }));
    observers_.push_back(platform().defaults().onChange([this](std::string_view key) {
        if (key == themeKey)
            state_.appThemeRaw = storedTheme();
    }));
}

void ContentView::scheduleRebuild() {
    if (isRebuildScheduled_)
        return;
    isRebuildScheduled_ = true;
    platform().mainQueue().post([self = QPointer(this)] {
        if (self)
            self->rebuild();
    });
}

void ContentView::rebuild() {
    isRebuildScheduled_ = false;
    header_->setColorScheme(effectiveScheme());
    tabs_->setColorScheme(effectiveScheme());
    tabs_->refresh();
    footer_->setColorScheme(effectiveScheme());
    list_->setColorScheme(preferredScheme());
    const auto shown = filter();
    if (shown) {
        list_->setFilter(*shown);
        list_->refresh();
    }
    list_->setVisible(shown.has_value());
    // What the panel covers is out of the keyboard's reach.
    const bool isCovered = state_.showSettings.value();
    list_->setFocusPolicy(isCovered ? Qt::NoFocus : Qt::TabFocus);
    // First the panel, which remembers where the keyboard was.
    presentations_->refresh(preferredScheme());
    if (isCovered && window()->focusWidget() == list_.get())
        setFocus();
    update();
    Q_EMIT rebuilt();
}

ColorScheme ContentView::effectiveScheme() const {
    return schemeOf(state_.appThemeRaw.value());
}

ColorScheme ContentView::preferredScheme() const {
    return schemeOf(settingsManager_.appTheme().value());
}

std::optional<HistoryFilter> ContentView::filter() const {
    const std::string& tab = state_.selectedTab.value();
    if (tab == "All")
        return HistoryFilter::all();
    if (tab == "Pinned")
        return HistoryFilter::pinned();
    const auto id = Uuid::parse(tab);
    return id ? std::optional(HistoryFilter::list(*id)) : std::nullopt;
}

void ContentView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), color(Role::surface, effectiveScheme()));
    painter.fillRect(dividerPlace, color(Role::border, effectiveScheme()));
}

// Keeps the toolkit from giving the keyboard to the first field: typing needs a click or Tab.
void ContentView::showEvent(QShowEvent*) {
    if (!window()->focusWidget())
        setFocus();
    scheduleRebuild();  // the sheets come back
}

void ContentView::keyPressEvent(QKeyEvent* event) {
    const bool showsSettings = state_.showSettings.value();
    if (event->key() == Qt::Key_Escape && showsSettings)
        withAnimation([this] { state_.showSettings = false; });
    else if (event->key() == Qt::Key_Down && list_->isVisible() && !showsSettings)
        list_->setFocus(Qt::TabFocusReason);
    else
        event->ignore();
}

}  // namespace brindle
