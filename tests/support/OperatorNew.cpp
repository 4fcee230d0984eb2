// SPDX-License-Identifier: Apache-2.0
#include "tests/support/OperatorNew.h"

#include <new>

void* operator new(std::size_t size) {
    return zeltest::newBlock(size);
}
void* operator new[](std::size_t size) {
    return zeltest::newBlock(size);
}
// The library's own calls these two's namesakes above; a sanitizer's doesn't.
void* operator new(std::size_t size, const std::nothrow_t& /*marker*/) noexcept {
    try {
        return zeltest::newBlock(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
void* operator new[](std::size_t size, const std::nothrow_t& marker) noexcept {
    return operator new(size, marker);
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
