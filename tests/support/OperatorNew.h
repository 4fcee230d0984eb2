// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

namespace zeltest {

// What operator new and operator delete do in a program with OperatorNew.cpp in it, which defines
// these two as it wants them.

/// Raises `std::bad_alloc` where there is no memory; answers no nil.
void* newBlock(std::size_t size);
/// Nil is no block.
void deleteBlock(void* block) noexcept;

} // namespace zeltest
