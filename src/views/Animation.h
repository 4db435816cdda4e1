#pragma once

#include <functional>

namespace brindle {

/// Runs a change of published state whose observers may show it as a movement.
void withAnimation(const std::function<void()>& change);

/// Whether the change that is being delivered was made that way.
bool isAnimatedChange();

}  // namespace brindle
