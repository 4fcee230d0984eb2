// SPDX-License-Identifier: Apache-2.0
#include "tests/memory/FailingMemory.h"

#include <cstdlib>
#include <limits>

namespace {

constexpr std::size_t unlimited = std::numeric_limits<std::size_t>::max();

thread_local std::size_t left = unlimited;
thread_local bool failed = false;

void* allocate(std::size_t size) {
    if (left == 0) {
        failed = true;
        throw std::bad_alloc();
    }
    left -= left == unlimited ? 0 : 1;
    void* const block = std::malloc(size == 0 ? 1 : size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

} // namespace

void* operator new(std::size_t size) {
    return allocate(size);
}
void* operator new[](std::size_t size) {
    return allocate(size);
}
void operator delete(void* pointer) noexcept {
    std::free(pointer);
}
void operator delete[](void* pointer) noexcept {
    std::free(pointer);
}
void operator delete(void* pointer, std::size_t /*size*/) noexcept {
    std::free(pointer);
}
void operator delete[](void* pointer, std::size_t /*size*/) noexcept {
    std::free(pointer);
}

namespace zeltest {

MemoryRunsOut::MemoryRunsOut(std::size_t afterAllocations) noexcept {
    left = afterAllocations;
    failed = false;
}

MemoryRunsOut::~MemoryRunsOut() {
    left = unlimited;
}

bool MemoryRunsOut::hasFailed() const noexcept {
    return failed;
}

} // namespace zeltest
