#include "platform/Platform.h"

#include <cassert>

namespace brindle {

namespace {
Platform* current = nullptr;
}

Platform& platform() {
    assert(current != nullptr);
    return *current;
}

void setPlatform(Platform* chosen) {
    current = chosen;
}

}  // namespace brindle
