// SPDX-License-Identifier: Apache-2.0
#include "platform/objects/AtomicWeakReference.h"

#include <array>

namespace zel {
inline namespace v1 {

std::mutex& weakReferenceLock(const void* address) noexcept {
    constexpr std::size_t count = 64;
    static auto* const locks = new std::array<std::mutex, count>; // never destroyed
    const auto number = reinterpret_cast<std::uintptr_t>(address);
    return (*locks)[((number >> 4) ^ (number >> 10)) % count];
}

} // namespace v1
} // namespace zel
