// SPDX-License-Identifier: Apache-2.0
#include "platform/objects/StyleBinding.h"

#include <deque>
#include <mutex>
#include <unordered_map>

namespace zel {
inline namespace v1 {
namespace {

/// The pairs that have a number.
struct BindingPool {
    std::mutex mutex; // guards everything below; innermost
    std::unordered_map<std::uint64_t, StyleBinding> numbers;
    std::deque<AppliedIdentifiers> pairs{AppliedIdentifiers{}};
};

BindingPool& bindingPool() {
    static auto* const pool = new BindingPool; // never destroyed: objects refer to its pairs
    return *pool;
}

} // namespace

constinit std::atomic<std::uint64_t> BindingEpoch::epoch_{1};

StyleBinding styleBindingOf(AppliedIdentifiers applied) {
    const std::uint64_t key = std::uint64_t{applied.scheme.number()} << 32 | applied.style.number();
    if (key == 0) {
        return 0;
    }
    BindingPool& pool = bindingPool();
    const std::scoped_lock guard(pool.mutex);
    const auto [found, isNew] =
        pool.numbers.try_emplace(key, static_cast<StyleBinding>(pool.pairs.size()));
    if (isNew) {
        pool.pairs.push_back(applied);
    }
    return found->second;
}

AppliedIdentifiers appliedIdentifiersOf(StyleBinding binding) {
    if (binding == 0) {
        return {};
    }
    BindingPool& pool = bindingPool();
    const std::scoped_lock guard(pool.mutex);
    return pool.pairs[binding];
}

} // namespace v1
} // namespace zel
