// SPDX-License-Identifier: Apache-2.0
#include "tests/support/OperatorNew.h"

#include <new>

void* operator new(std::size_t size) {
    return zeltest::newBlock(size);
}
void* operator new[](std::size_t size) {
    return zeltest::newBlock(size);
}
void operator delete(void* pointer) noexcept {
    zeltest::deleteBlock(pointer);
}
void operator delete[](void* pointer) noexcept {
    zeltest::deleteBlock(pointer);
}
void operator delete(void* pointer, std::size_t /*size*/) noexcept {
    zeltest::deleteBlock(pointer);
}
void operator delete[](void* pointer, std::size_t /*size*/) noexcept {
    zeltest::deleteBlock(pointer);
}
