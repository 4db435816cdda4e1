#pragma once

#include "base/Uuid.h"
#include "model/ClipboardItem.h"

namespace brindle {

/// Which entries a tab shows.
class HistoryFilter {
public:
    static HistoryFilter list(Uuid id) { return {Kind::list, id}; }
    static HistoryFilter all() { return {Kind::all, {}}; }
    static HistoryFilter pinned() { return {Kind::pinned, {}}; }

    [[nodiscard]] bool shows(const ClipboardItem& item) const {
        if (kind_ == Kind::list)
            return item.listId == id_;
        return kind_ == Kind::all || item.isPinned;
    }

    friend bool operator==(const HistoryFilter&, const HistoryFilter&) = default;

private:
    enum class Kind { list, all, pinned };
    HistoryFilter(Kind kind, Uuid id) : kind_(kind), id_(id) {}

    Kind kind_;
    Uuid id_;
};

}  // namespace brindle
