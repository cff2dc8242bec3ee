#pragma once

#include <cstdint>
#include <functional>

namespace Benchmarks {

/// How often this program has taken something from the heap, all threads together.
[[nodiscard]] std::uint64_t allocationsSoFar();

/// How many of these were large: of 64 KiB or more, as when a table grows that is not small any more.
[[nodiscard]] std::uint64_t largeAllocationsSoFar();

/// Takes back what has been counted since `allocationsSoFar()` gave that number.
void forgetAllocationsSince(std::uint64_t count);

template <typename Work>
void withoutCountingAllocations(const Work& work) {
    const auto before = allocationsSoFar();
    work();
    forgetAllocationsSince(before);
}

/// By how much what it holds on the heap has grown after the work, with what the allocator adds to each block. Takes time
/// for each block, which is why it is not counted beside times.
[[nodiscard]] std::int64_t bytesGained(const std::function<void()>& work);

}  // namespace Benchmarks
