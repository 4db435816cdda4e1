#include <cstdint>
#include <cstdlib>

#include "views/ColorHelper.h"

/// Every component is one that can be painted.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    const auto color = brindle::colorFromHex({reinterpret_cast<const char*>(bytes), count});
    for (const double each : {color.red, color.green, color.blue, color.opacity}) {
        if (!(each >= 0 && each <= 1))
            std::abort();
    }
    return 0;
}
