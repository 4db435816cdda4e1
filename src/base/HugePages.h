#pragma once

#include <cstddef>

namespace brindle {

/// Advises the system to put huge pages under several megabytes that nobody has touched yet (madvise(2)): its work at
/// the first touch of each small one takes longer than filling it. Without them all is as before.
void adviseHugePages(void* start, std::size_t size);

}  // namespace brindle
