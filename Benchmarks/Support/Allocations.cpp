#include "Benchmarks/Support/Allocations.hpp"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <malloc.h>
#include <new>

namespace {

std::atomic<std::uint64_t> allocations{0};
std::atomic<std::uint64_t> largeAllocations{0};
constexpr std::size_t large = 64 * 1024;
std::atomic<std::int64_t> heldBytes{0};
std::atomic<bool> bytesAreCounted{false};

/// glibc keeps a block's size in front of it.
constexpr std::int64_t blockHeader = 8;

std::int64_t footprint(void* block) {
    return static_cast<std::int64_t>(malloc_usable_size(block)) + blockHeader;
}

void* counted(void* block, std::size_t size) {
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    allocations.fetch_add(1, std::memory_order_relaxed);
    if (size >= large) {
        largeAllocations.fetch_add(1, std::memory_order_relaxed);
    }
    if (bytesAreCounted.load(std::memory_order_relaxed)) {
        heldBytes.fetch_add(footprint(block), std::memory_order_relaxed);
    }
    return block;
}

void release(void* block) noexcept {
    if (block != nullptr && bytesAreCounted.load(std::memory_order_relaxed)) {
        heldBytes.fetch_sub(footprint(block), std::memory_order_relaxed);
    }
    std::free(block);
}

}  // namespace

// Of the whole program. The nothrow forms and those for arrays end in these.
void* operator new(std::size_t size) { return counted(std::malloc(size == 0 ? 1 : size), size); }
void* operator new(std::size_t size, std::align_val_t alignment) {
    const auto boundary = static_cast<std::size_t>(alignment);
    return counted(std::aligned_alloc(boundary, (size + boundary - 1) / boundary * boundary), size);
}
void operator delete(void* block) noexcept { release(block); }
void operator delete(void* block, std::size_t) noexcept { release(block); }
void operator delete(void* block, std::align_val_t) noexcept { release(block); }
void operator delete(void* block, std::size_t, std::align_val_t) noexcept { release(block); }

namespace Benchmarks {

std::uint64_t allocationsSoFar() { return allocations.load(std::memory_order_relaxed); }

std::uint64_t largeAllocationsSoFar() { return largeAllocations.load(std::memory_order_relaxed); }

void forgetAllocationsSince(std::uint64_t count) { allocations.store(count, std::memory_order_relaxed); }

std::int64_t bytesGained(const std::function<void()>& work) {
    const std::int64_t before = heldBytes.load(std::memory_order_relaxed);
    bytesAreCounted.store(true, std::memory_order_relaxed);
    work();
    bytesAreCounted.store(false, std::memory_order_relaxed);
    return heldBytes.load(std::memory_order_relaxed) - before;
}

}  // namespace Benchmarks
