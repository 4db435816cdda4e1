#pragma once

namespace brindle {

/// Lets assistive technology see the strip as a list of page tabs. Safe to call again.
void installTabsAccessibility();

}  // namespace brindle
