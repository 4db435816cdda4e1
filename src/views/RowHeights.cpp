#include "views/RowHeights.h"

#include <algorithm>
#include <cstring>
#include <type_traits>

#include "views/HistoryItemRow.h"
#include "views/RowText.h"

namespace brindle {

// The bytes of an id are random already.
std::size_t RowHeights::Hash::operator()(const Uuid& id) const {
    static_assert(std::is_trivially_copyable_v<Uuid> && sizeof(Uuid) >= sizeof(std::size_t));
    std::size_t hash = 0;
    std::memcpy(&hash, &id, sizeof hash);
    return hash;
}

void RowHeights::rebuild(const std::vector<ClipboardItem>& items) {
    // Entries that left are forgotten now and then, all at once.
    constexpr std::size_t slack = 1024;
    if (lineCounts_.size() > 2 * items.size() + slack)
        lineCounts_.clear();
    tops_.resize(items.size() + 1);
    tops_[0] = 0;
    for (std::size_t i = 0; i < items.size(); ++i)
        tops_[i + 1] = tops_[i] + HistoryItemRow::height(lineCount(items[i]));
}

int RowHeights::lineCount(const ClipboardItem& item) {
    std::uint8_t& known = lineCounts_[item.id][item.isPinned ? 1 : 0];
    if (known == 0)
        known = static_cast<std::uint8_t>(RowText::lineCount(item.content.view(), HistoryItemRow::textWidth(item)));
    return known;
}

std::optional<std::size_t> RowHeights::rowAt(int y) const {
    if (y < 0 || y >= total())
        return std::nullopt;
    return static_cast<std::size_t>(std::upper_bound(tops_.begin(), tops_.end(), y) - tops_.begin()) - 1;
}

}  // namespace brindle
