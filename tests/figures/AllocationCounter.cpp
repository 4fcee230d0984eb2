// SPDX-License-Identifier: Apache-2.0
#include "tests/figures/AllocationCounter.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> allocationCount{0};
std::atomic<std::size_t> liveByteCount{0};

constexpr std::size_t headerSize = alignof(std::max_align_t);

// Each block keeps its size in front of it.
void* allocate(std::size_t size) {
    auto* const block = static_cast<char*>(std::malloc(size + headerSize));
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    *reinterpret_cast<std::size_t*>(block) = size;
    allocationCount.fetch_add(1, std::memory_order_relaxed);
    liveByteCount.fetch_add(size, std::memory_order_relaxed);
    return block + headerSize;
}

void release(void* pointer) noexcept {
    if (pointer != nullptr) {
        char* const block = static_cast<char*>(pointer) - headerSize;
        liveByteCount.fetch_sub(*reinterpret_cast<std::size_t*>(block), std::memory_order_relaxed);
        std::free(block);
    }
}

} // namespace

void* operator new(std::size_t size) {
    return allocate(size);
}
void* operator new[](std::size_t size) {
    return allocate(size);
}
void operator delete(void* pointer) noexcept {
    release(pointer);
}
void operator delete[](void* pointer) noexcept {
    release(pointer);
}
void operator delete(void* pointer, std::size_t /*size*/) noexcept {
    release(pointer);
}
void operator delete[](void* pointer, std::size_t /*size*/) noexcept {
    release(pointer);
}

namespace zeltest {

Allocations Allocations::now() noexcept {
    return {allocationCount.load(std::memory_order_relaxed),
            liveByteCount.load(std::memory_order_relaxed)};
}

} // namespace zeltest
