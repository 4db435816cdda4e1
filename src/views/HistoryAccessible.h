#pragma once

#include <cstddef>

namespace brindle {

class HistoryView;

/// Lets assistive technology see the list's rows, which are no widgets. Safe to call again.
void installHistoryAccessibility();

void announceRowsChanged(HistoryView& view);
void announceRowFocused(HistoryView& view, std::size_t row);

}  // namespace brindle
