// SPDX-License-Identifier: Apache-2.0
#include "tests/figures/AllocationCounter.h"

#include "tests/support/OperatorNew.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace zeltest {

namespace {

std::atomic<std::size_t> allocationCount{0};
std::atomic<std::size_t> liveByteCount{0};

// Each block keeps its size in front of it.
constexpr std::size_t headerSize = alignof(std::max_align_t);

} // namespace

void* newBlock(std::size_t size) {
    auto* const start = static_cast<char*>(std::malloc(size + headerSize));
    if (start == nullptr) {
        throw std::bad_alloc();
    }
    *reinterpret_cast<std::size_t*>(start) = size;
    allocationCount.fetch_add(1, std::memory_order_relaxed);
    liveByteCount.fetch_add(size, std::memory_order_relaxed);
    return start + headerSize;
}

void deleteBlock(void* block) noexcept {
    if (block != nullptr) {
        char* const start = static_cast<char*>(block) - headerSize;
        liveByteCount.fetch_sub(*reinterpret_cast<std::size_t*>(start), std::memory_order_relaxed);
        std::free(start);
    }
}

Allocations Allocations::now() noexcept {
    return {allocationCount.load(std::memory_order_relaxed),
            liveByteCount.load(std::memory_order_relaxed)};
}

} // namespace zeltest
