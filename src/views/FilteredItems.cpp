#include "views/FilteredItems.h"

#include <algorithm>
#include <iterator>

#include "base/TextSearch.h"

namespace brindle {

namespace {

bool isAscii(const std::string& text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

}  // namespace

// Whoever types goes on from what is found already. Beyond ASCII a longer text can be found where its beginning is not:
// an accent that follows a letter makes another one of it.
bool FilteredItems::narrows(const HistoryFilter& filter, const std::string& searchText) const {
    return isValid_ && filter == filter_ && searchText.starts_with(searchText_) && isAscii(searchText);
}

void FilteredItems::update(const std::vector<ClipboardItem>& history, const HistoryFilter& filter,
                           const std::string& searchText) {
    if (isValid_ && filter == filter_ && searchText == searchText_)
        return;
    const TextSearch search(searchText);
    const auto isShown = [&](const ClipboardItem& item) {
        return filter.shows(item) && (searchText.empty() || search.isFoundIn(item.content.view()));
    };
    if (narrows(filter, searchText)) {
        std::erase_if(items_, [&](const ClipboardItem& item) { return !isShown(item); });
    } else {
        items_.clear();
        std::copy_if(history.begin(), history.end(), std::back_inserter(items_), isShown);
    }
    filter_ = filter;
    searchText_ = searchText;
    isValid_ = true;
}

}  // namespace brindle
