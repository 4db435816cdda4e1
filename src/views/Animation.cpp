#include "views/Animation.h"

#include <utility>

namespace brindle {

namespace {

bool isAnimated = false;

}  // namespace

void withAnimation(const std::function<void()>& change) {
    const bool before = std::exchange(isAnimated, true);
    change();
    isAnimated = before;
}

bool isAnimatedChange() {
    return isAnimated;
}

}  // namespace brindle
