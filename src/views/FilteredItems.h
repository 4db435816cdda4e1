#pragma once

#include <string>
#include <vector>

#include "model/ClipboardItem.h"
#include "views/HistoryFilter.h"

namespace brindle {

/// The entries of the history that a filter and a search text leave, in the history's order.
class FilteredItems {
public:
    void update(const std::vector<ClipboardItem>& history, const HistoryFilter& filter, const std::string& searchText);
    /// The history itself is another one.
    void invalidate() { isValid_ = false; }

    [[nodiscard]] const std::vector<ClipboardItem>& items() const { return items_; }

private:
    [[nodiscard]] bool narrows(const HistoryFilter& filter, const std::string& searchText) const;

    std::vector<ClipboardItem> items_;
    HistoryFilter filter_ = HistoryFilter::all();
    std::string searchText_;
    bool isValid_ = false;
};

}  // namespace brindle
