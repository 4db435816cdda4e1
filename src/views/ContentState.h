#pragma once

#include <optional>
#include <string>

#include "base/Published.h"
#include "model/CustomList.h"

namespace brindle {

/// The popover's own state. It lasts as long as the process: closing the popover resets nothing.
struct ContentState {
    Published<std::string> appThemeRaw{"Dark"};  ///< the stored theme, as it is stored
    Published<std::string> searchText;
    Published<std::string> selectedTab{"All"};  ///< "All", "Pinned" or a list's id
    Published<bool> isSearchFocused{false};
    Published<bool> showSettings{false};
    Published<bool> showAbout{false};
    Published<bool> showAccessibilityDialog{false};
    Published<bool> showNewListAlert{false};
    Published<std::string> newListName;
    Published<bool> showRenameListAlert{false};
    Published<std::string> renameListName;
    Published<std::optional<CustomList>> listToRename;
    Published<bool> showDeleteListAlert{false};
    Published<std::optional<CustomList>> listToDelete;
};

}  // namespace brindle
