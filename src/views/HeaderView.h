#pragma once

#include <QWidget>

#include "views/ContentState.h"
#include "views/FieldBox.h"
#include "views/SymbolButton.h"

namespace brindle {

/// The search field and the button with the program's menu.
class HeaderView final : public QWidget {
    Q_OBJECT
public:
    HeaderView(Published<std::string>& searchText, Published<bool>& isSearchFocused, Published<bool>& showSettings,
               Published<bool>& showAbout, QWidget* parent = nullptr);

    void setColorScheme(ColorScheme scheme);

private:
    void followSearchFocus();
    void openMenu();

    Published<bool>& isSearchFocused_;
    Published<bool>& showSettings_;
    Published<bool>& showAbout_;
    FieldBox search_;
    SymbolButton menuButton_;
    Subscription searchFocusObserver_;
};

}  // namespace brindle
