#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

#include "model/ClipboardItem.h"

namespace brindle {

/// Where each row of the list begins. An entry's text never changes, so its lines are counted once.
class RowHeights {
public:
    void rebuild(const std::vector<ClipboardItem>& items);

    [[nodiscard]] std::size_t count() const { return tops_.size() - 1; }
    [[nodiscard]] int total() const { return tops_.back(); }
    [[nodiscard]] int top(std::size_t row) const { return tops_[row]; }
    [[nodiscard]] int height(std::size_t row) const { return tops_[row + 1] - tops_[row]; }
    /// The row at that distance from the top of the first one; none above and below all rows.
    [[nodiscard]] std::optional<std::size_t> rowAt(int y) const;

private:
    struct Hash {
        std::size_t operator()(const Uuid& id) const;
    };
    /// By whether the entry is pinned, since that narrows its text; 0: not counted yet.
    using LineCounts = std::array<std::uint8_t, 2>;

    int lineCount(const ClipboardItem& item);

    std::vector<int> tops_{0};
    std::unordered_map<Uuid, LineCounts, Hash> lineCounts_;
};

}  // namespace brindle
