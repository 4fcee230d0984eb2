// SPDX-License-Identifier: Apache-2.0
#include "platform/locks/NestedLocks.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <mutex>

namespace zel {
inline namespace v1 {
namespace {

struct Nesting {
    const RecursiveLock* outer = nullptr;
    const RecursiveLock* inner = nullptr;
    CallStack seen;
};

/// By the outer lock's address; one that falls on the same place takes it over.
struct Nestings {
    std::mutex mutex; // guards everything below
    std::array<Nesting, 1024> places;

    Nesting& of(const RecursiveLock& outer) noexcept {
        const auto address = reinterpret_cast<std::uintptr_t>(&outer);
        return places[((address >> 4) ^ (address >> 14)) % places.size()];
    }
};

Nestings& nestings() noexcept {
    static Nestings all; // trivially destroyed: locks may be taken at exit
    return all;
}

} // namespace

std::optional<CallStack> NestedLocks::noteInside(const RecursiveLock& outer,
                                                 const RecursiveLock& inner) noexcept {
    constexpr int farthest = 64; // so that long chains don't cost their length each time
    Nestings& all = nestings();
    const std::scoped_lock guard(all.mutex);
    Nesting& noted = all.of(outer);
    if (noted.outer == &outer && noted.inner == &inner) {
        return std::nullopt;
    }
    const RecursiveLock* each = &inner;
    for (int step = 0; step < farthest; ++step) {
        const Nesting& next = all.of(*each);
        if (next.outer != each) {
            break;
        }
        if (next.inner == &outer) {
            return next.seen;
        }
        each = next.inner;
    }
    noted = {&outer, &inner, CallStack::here()};
    return std::nullopt;
}

void NestedLocks::forget(const RecursiveLock& lock) noexcept {
    Nestings& all = nestings();
    const std::scoped_lock guard(all.mutex);
    for (Nesting& each : all.places) {
        if (each.outer == &lock || each.inner == &lock) {
            each = {};
        }
    }
}

} // namespace v1
} // namespace zel
