#include "base/HugePages.h"

#include <sys/mman.h>

#include <memory>

namespace brindle {

void adviseHugePages(void* start, std::size_t size) {
    constexpr std::size_t hugePage = std::size_t{2} << 20U;
    if (size >= 4 * hugePage && std::align(hugePage, hugePage, start, size) != nullptr)
        ::madvise(start, size, MADV_HUGEPAGE);
}

}  // namespace brindle
