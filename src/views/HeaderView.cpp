#include "views/HeaderView.h"

#include <QMenu>

#include "platform/Application.h"
#include "platform/Platform.h"
#include "views/Animation.h"
#include "views/Feedback.h"
#include "views/PopupMenu.h"

namespace brindle {

namespace {

constexpr QRect searchPlace(16, 16, 272, 32);
constexpr QPoint menuButtonPlace(304, 17);
constexpr int menuWidth = 150;
constexpr int menuGap = 4;

}  // namespace

HeaderView::HeaderView(Published<std::string>& searchText, Published<bool>& isSearchFocused,
                       Published<bool>& showSettings, Published<bool>& showAbout, QWidget* parent)
    : QWidget(parent),
      isSearchFocused_(isSearchFocused),
      showSettings_(showSettings),
      showAbout_(showAbout),
      search_(searchText, QStringLiteral("Search..."), {.radius = 8, .padding = 8, .symbol = "magnifyingglass"}, this),
      menuButton_(SymbolButton::Kind::menu, QStringLiteral("Menu"), this) {
    search_.setBoxGeometry(searchPlace);
    menuButton_.move(menuButtonPlace);
    connect(&menuButton_, &SymbolButton::clicked, this, &HeaderView::openMenu);
    connect(&search_.field(), &TextField::focusChanged, this, &HeaderView::followSearchFocus);
    searchFocusObserver_ = isSearchFocused_.subscribe([this](bool isFocused) {
        if (!isFocused && window()->focusWidget() == &search_.field())
            parentWidget()->setFocus();
    });
}

void HeaderView::setColorScheme(ColorScheme scheme) {
    search_.setColorScheme(scheme);
    menuButton_.setColorScheme(scheme);
}

void HeaderView::followSearchFocus() {
    // In a window that is not active the field keeps its turn.
    const bool isFocused = window()->focusWidget() == &search_.field();
    if (isFocused != isSearchFocused_.value())
        isSearchFocused_ = isFocused;
}

void HeaderView::openMenu() {
    QMenu* menu = newMenu(this, menuWidth);
    menu->addAction(QStringLiteral("Settings"), this,
                    [this] { withAnimation([this] { showSettings_ = !showSettings_.value(); }); });
    menu->addAction(QStringLiteral("About"), this, [this] { showAbout_ = true; });
    menu->addAction(QStringLiteral("Send Feedback"), this, [] { openFeedbackMail(); });
    menu->addSeparator();
    menu->addAction(QStringLiteral("Quit"), this, [] { platform().application().terminate(); });
    connect(menu, &QMenu::aboutToHide, &menuButton_, [this] { menuButton_.setMenuOpen(false); });
    menuButton_.setMenuOpen(true);
    const QPoint below = menuButton_.geometry().bottomRight() + QPoint(1 - menuWidth, 1 + menuGap);
    showMenu(*menu, menuButton_.colorScheme(), mapToGlobal(below));
}

}  // namespace brindle
