#pragma once

#include <cstddef>

namespace brindle {

class HistoryView;

/// Lets assistive technology see the list's rows, which are no widgets. Safe to call again.
void installHistoryAccessibility();

/// To be called after every refresh: tells which rows came, went or have another text, and nothing when none did.
void announceRowsChanged(HistoryView& view);
void announceRowFocused(HistoryView& view, std::size_t row);

}  // namespace brindle
