// SPDX-License-Identifier: Apache-2.0
#include "tests/memory/FailingMemory.h"

#include "tests/support/OperatorNew.h"

#include <cstdlib>
#include <limits>

namespace zeltest {

namespace {

constexpr std::size_t unlimited = std::numeric_limits<std::size_t>::max();

thread_local std::size_t left = unlimited;
thread_local bool failed = false;

} // namespace

void* newBlock(std::size_t size) {
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

void deleteBlock(void* block) noexcept {
    std::free(block);
}

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
