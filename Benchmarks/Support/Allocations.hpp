#pragma once

#include <cstdint>

namespace Benchmarks {

/// What this program has taken from the heap, all threads together.
struct Heap {
    std::uint64_t allocations = 0;  ///< ever made
    std::int64_t bytes = 0;         ///< held now, with what the allocator adds to each block
};

[[nodiscard]] Heap heapNow();

}  // namespace Benchmarks
