// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <vector>

namespace zel {
inline namespace v1 {

struct WeakTableEntry;

/// An object's entries in weak-keyed tables: one pointer wide, since most objects have one entry;
/// several stand in a vector. Guarded by whoever owns it, but for what says otherwise.
class EntryLinks {
public:
    EntryLinks() = default;
    EntryLinks(const EntryLinks&) = delete;
    EntryLinks& operator=(const EntryLinks&) = delete;
    ~EntryLinks() {
        if (isMany()) {
            delete many();
        }
    }

    /// Adds the first entry; false where there is one already. Any thread.
    [[nodiscard]] bool addFirst(WeakTableEntry& entry) noexcept {
        std::uintptr_t none = 0;
        return word_.compare_exchange_strong(none, reinterpret_cast<std::uintptr_t>(&entry),
                                             std::memory_order_acq_rel);
    }
    void add(WeakTableEntry& entry) {
        if (addFirst(entry)) {
            return;
        }
        if (!isMany()) {
            auto* const vector = new Many{only()};
            word_.store(reinterpret_cast<std::uintptr_t>(vector) | manyTag,
                        std::memory_order_release);
        }
        many()->push_back(&entry);
    }

    void remove(const WeakTableEntry& entry) noexcept {
        if (isMany()) {
            many()->erase(std::find(many()->begin(), many()->end(), &entry));
        } else {
            store(nullptr);
        }
    }

    void replace(const WeakTableEntry& entry, WeakTableEntry& by) noexcept {
        if (isMany()) {
            *std::find(many()->begin(), many()->end(), &entry) = &by;
        } else {
            store(&by);
        }
    }

    /// The first entry for which `accept` answers true, or nothing.
    template <class Accept>
    [[nodiscard, gnu::always_inline]] WeakTableEntry* find(Accept accept) const {
        if (!isMany()) [[likely]] {
            WeakTableEntry* const single = only();
            return single && accept(*single) ? single : nullptr;
        }
        for (WeakTableEntry* const each : *many()) { // smaller than std::find_if, which unrolls
            if (accept(*each)) {
                return each;
            }
        }
        return nullptr;
    }

    [[nodiscard]] bool isEmpty() const noexcept { return isMany() ? many()->empty() : isUnused(); }
    /// True only where there is none. Any thread.
    [[nodiscard]] bool isUnused() const noexcept { return word() == 0; }

private:
    using Many = std::vector<WeakTableEntry*>;
    static constexpr std::uintptr_t manyTag = 1; // entries and vectors stand at even addresses

    [[nodiscard]] std::uintptr_t word() const noexcept {
        return word_.load(std::memory_order_acquire);
    }
    [[nodiscard]] bool isMany() const noexcept { return (word() & manyTag) != 0; }
    [[nodiscard]] Many* many() const noexcept { return reinterpret_cast<Many*>(word() & ~manyTag); }
    [[nodiscard]] WeakTableEntry* only() const noexcept {
        return reinterpret_cast<WeakTableEntry*>(word());
    }
    void store(WeakTableEntry* entry) noexcept {
        word_.store(reinterpret_cast<std::uintptr_t>(entry), std::memory_order_release);
    }

    std::atomic<std::uintptr_t> word_{0};
};

} // namespace v1
} // namespace zel
