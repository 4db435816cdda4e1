#pragma once

namespace brindle {

/// Lets assistive technology see tabs as page tabs, and which one is selected. Safe to call again.
void installTabAccessibility();

}  // namespace brindle
