#include "views/TabsView.h"

#include <QPainter>
#include <algorithm>
#include <cmath>
#include <map>

#include "platform/qt/QtText.h"
#include "services/HistoryManager.h"
#include "views/AccessibleRole.h"
#include "views/Palette.h"
#include "views/TabButton.h"

namespace brindle {

namespace {

// Points.
constexpr int sidePadding = 16;
constexpr int tabGap = 12;
constexpr int tabHeight = 28;

struct Counts {
    std::size_t pinned = 0;
    std::map<Uuid, std::size_t> filed;
};

Counts countEntries(const std::vector<ClipboardItem>& history) {
    Counts counts;
    for (const ClipboardItem& item : history) {
        counts.pinned += item.isPinned ? 1 : 0;
        if (item.listId)
            ++counts.filed[*item.listId];
    }
    return counts;
}

}  // namespace

TabsView::TabsView(const Bindings& bindings, HistoryManager& historyManager, QWidget* parent)
    : QWidget(parent),
      bindings_(bindings),
      historyManager_(historyManager),
      addButton_(SymbolButton::Kind::addList, QStringLiteral("Add List"), this) {
    setAccessible(*this, QAccessible::PageTabList, QStringLiteral("Lists"));
    setContextMenuPolicy(Qt::PreventContextMenu);
    installEventFilter(this);
    addButton_.installEventFilter(this);
    connect(&addButton_, &SymbolButton::clicked, this, &TabsView::addList);
    refresh();
}

void TabsView::setColorScheme(ColorScheme scheme) {
    scheme_ = scheme;
    for (const Tab& tab : tabs_)
        tab.button->setColorScheme(scheme);
    addButton_.setColorScheme(scheme);
    update();
}

void TabsView::refresh() {
    updateTabs();
    showTabs();
    layOut();
    if (bindings_.selectedTab.value() == shownTab_)
        return;
    shownTab_ = bindings_.selectedTab.value();
    reveal(*tabs_[keyboardTab()].button);
}

void TabsView::updateTabs() {
    std::multimap<std::string, TabButton*> unused;
    for (const Tab& tab : tabs_)
        unused.emplace(tab.key, tab.button);
    bool isNewOrder = false;
    const auto buttonFor = [&](const std::string& key) {
        if (auto known = unused.extract(key))
            return known.mapped();
        isNewOrder = true;
        return makeButton(key);
    };
    std::vector<Tab> tabs;
    for (const char* key : {"All", "Pinned"})
        tabs.push_back({key, std::nullopt, buttonFor(key)});
    for (const CustomList& list : historyManager_.customLists().value()) {
        const std::string key = list.id.text();
        tabs.push_back({key, list, buttonFor(key)});
    }
    tabs_ = std::move(tabs);
    if (isNewOrder)
        orderTabs();
    for (const auto& [key, button] : unused) {
        if (button->hasFocus())
            tabs_[keyboardTab()].button->setFocus();
        delete button;
    }
}

TabButton* TabsView::makeButton(const std::string& key) {
    auto* button = new TabButton([this, key] { bindings_.selectedTab = key; }, this);
    button->setColorScheme(scheme_);
    button->installEventFilter(this);
    button->QWidget::show();
    return button;
}

void TabsView::orderTabs() {
    for (std::size_t i = 1; i < tabs_.size(); ++i)
        setTabOrder(tabs_[i - 1].button, tabs_[i].button);
    setTabOrder(tabs_.back().button, &addButton_);
}

void TabsView::showTabs() {
    const auto& history = historyManager_.history().value();
    const Counts counts = countEntries(history);
    for (const Tab& tab : tabs_) {
        const bool isSelected = tab.key == bindings_.selectedTab.value();
        if (tab.list) {
            const auto found = counts.filed.find(tab.list->id);
            tab.button->show(toQString(tab.list->name), found == counts.filed.end() ? 0 : found->second, isSelected);
        } else {
            tab.button->show(toQString(tab.key), tab.key == "All" ? history.size() : counts.pinned, isSelected);
        }
        tab.button->setFocusPolicy(Qt::NoFocus);
    }
    TabButton* stop = tabs_[keyboardTab()].button;
    stop->setFocusPolicy(Qt::TabFocus);
    // A click selects another tab than the one that has the keyboard, which goes along.
    const QWidget* focused = window()->focusWidget();
    if (focused != stop && std::ranges::find(tabs_, focused, &Tab::button) != tabs_.end())
        stop->setFocus(Qt::OtherFocusReason);
}

std::size_t TabsView::keyboardTab() const {
    const auto selected = std::ranges::find(tabs_, bindings_.selectedTab.value(), &Tab::key);
    return selected == tabs_.end() ? 0 : static_cast<std::size_t>(selected - tabs_.begin());
}

void TabsView::layOut() {
    double widths = 0;
    for (const Tab& tab : tabs_)
        widths += tab.button->exactWidth() + tabGap;
    stripWidth_ = sidePadding + widths + addButton_.width() + sidePadding;
    offset_ = std::clamp(offset_, 0.0, std::max(0.0, stripWidth_ - width()));
    double x = sidePadding - std::round(offset_);
    const auto whole = [](double points) { return static_cast<int>(std::lround(points)); };
    for (const Tab& tab : tabs_) {
        const double end = x + tab.button->exactWidth();
        tab.button->setGeometry(whole(x), 0, whole(end) - whole(x), tabHeight);
        x = end + tabGap;
    }
    addButton_.move(whole(x), 0);
}

void TabsView::scrollBy(double points) {
    offset_ += points;
    layOut();
}

void TabsView::reveal(const QWidget& item) {
    // With the last tab comes the button, which would otherwise be cut.
    const QWidget& last = &item == tabs_.back().button ? addButton_ : item;
    const int tooFarRight = last.x() + last.width() + sidePadding - width();
    const int tooFarLeft = item.x() - sidePadding;
    if (tooFarRight > 0)
        scrollBy(std::min(tooFarRight, tooFarLeft));
    else if (tooFarLeft < 0)
        scrollBy(tooFarLeft);
}

void TabsView::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), color(Role::surface, scheme_));
}

void TabsView::resizeEvent(QResizeEvent*) {
    layOut();
    reveal(*tabs_[keyboardTab()].button);
}

}  // namespace brindle
