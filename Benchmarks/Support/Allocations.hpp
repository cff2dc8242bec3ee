#pragma once

#include <cstdint>
#include <functional>

namespace Benchmarks {

/// How often this program has taken something from the heap, all threads together.
[[nodiscard]] std::uint64_t allocationsSoFar();

/// By how much what it holds on the heap has grown after the work, with what the allocator adds to each block. Takes time
/// for each block, which is why it is not counted beside times.
[[nodiscard]] std::int64_t bytesGained(const std::function<void()>& work);

}  // namespace Benchmarks
