// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

namespace zel {
inline namespace v1 {

struct WeakTableEntry;

/// An object's entries in weak-keyed tables: one pointer wide, since most objects have one entry;
/// several stand in a vector. Guarded by whoever owns it.
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

    void add(WeakTableEntry& entry) {
        if (word_ == 0) {
            word_ = reinterpret_cast<std::uintptr_t>(&entry);
            return;
        }
        if (!isMany()) {
            auto* const vector = new Many{reinterpret_cast<WeakTableEntry*>(word_)};
            word_ = reinterpret_cast<std::uintptr_t>(vector) | manyTag;
        }
        many()->push_back(&entry);
    }

    void remove(const WeakTableEntry& entry) noexcept {
        if (isMany()) {
            many()->erase(std::find(many()->begin(), many()->end(), &entry));
        } else {
            word_ = 0;
        }
    }

    void replace(const WeakTableEntry& entry, WeakTableEntry& by) noexcept {
        if (isMany()) {
            *std::find(many()->begin(), many()->end(), &entry) = &by;
        } else {
            word_ = reinterpret_cast<std::uintptr_t>(&by);
        }
    }

    /// The first entry for which `accept` answers true, or nothing.
    template <class Accept>
    [[nodiscard]] WeakTableEntry* find(Accept accept) const {
        if (!isMany()) {
            auto* const only = reinterpret_cast<WeakTableEntry*>(word_);
            return only && accept(*only) ? only : nullptr;
        }
        const auto found =
            std::find_if(many()->begin(), many()->end(), [&](auto* each) { return accept(*each); });
        return found == many()->end() ? nullptr : *found;
    }

    [[nodiscard]] bool isEmpty() const noexcept { return isMany() ? many()->empty() : word_ == 0; }

private:
    using Many = std::vector<WeakTableEntry*>;
    static constexpr std::uintptr_t manyTag = 1; // entries and vectors stand at even addresses

    [[nodiscard]] bool isMany() const noexcept { return (word_ & manyTag) != 0; }
    [[nodiscard]] Many* many() const noexcept { return reinterpret_cast<Many*>(word_ & ~manyTag); }

    std::uintptr_t word_ = 0;
};

} // namespace v1
} // namespace zel
