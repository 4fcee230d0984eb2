// SPDX-License-Identifier: Apache-2.0
#include "platform/StringPool.h"

#include <cstring>

namespace zel {
inline namespace v1 {
namespace {

constexpr std::size_t initialCapacity = 256;

void place(std::atomic<const PooledString*>* slots, std::size_t mask, const PooledString* string) {
    std::size_t at = string->hash & mask;
    while (slots[at].load(std::memory_order_relaxed) != nullptr) {
        at = (at + 1) & mask;
    }
    slots[at].store(string, std::memory_order_release);
}

} // namespace

StringPool::Table::Table(std::size_t capacity)
    : mask(capacity - 1), slots(std::make_unique<std::atomic<const PooledString*>[]>(capacity)) {}

StringPool::StringPool() {
    tables_.push_back(std::make_unique<Table>(initialCapacity));
    table_.store(tables_.back().get(), std::memory_order_release);
}

StringPool::~StringPool() = default;

// Eight bytes at a time, each folded in by a multiplication with the golden ratio's fraction; the
// last step brings the high bits, the well mixed ones, down to where the mask looks.
std::uint64_t StringPool::hashOf(std::string_view text) noexcept {
    constexpr std::uint64_t golden = 0x9E3779B97F4A7C15ULL;
    std::uint64_t hash = golden ^ text.size();
    const char* bytes = text.data();
    std::size_t left = text.size();
    for (; left >= 8; left -= 8, bytes += 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes, 8);
        hash = (hash ^ word) * golden;
        hash ^= hash >> 32;
    }
    if (left > 0) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes, left);
        hash = (hash ^ word) * golden;
    }
    return hash ^ (hash >> 29);
}

const PooledString* StringPool::intern(std::string_view text) {
    if (const PooledString* found = find(text)) {
        return found;
    }
    const std::scoped_lock guard(mutex_);
    if (const PooledString* found = find(text)) {
        return found;
    }
    if ((std::size_t{count_} + 1) * 2 > tables_.back()->mask) {
        grow();
    }
    const PooledString& added = add(text);
    place(tables_.back()->slots.get(), tables_.back()->mask, &added);
    return &added;
}

PooledString& StringPool::add(std::string_view text) {
    const Place place(count_);
    if (place.offset == 0) {
        owned_.push_back(std::make_unique<PooledString[]>(place.capacity()));
        segments_[place.segment].store(owned_.back().get(), std::memory_order_release);
    }
    PooledString& added = owned_.back()[place.offset];
    added = PooledString{std::string(text), hashOf(text), count_};
    ++count_;
    return added;
}

// The outgrown table stays: another thread may be looking through it.
void StringPool::grow() {
    auto larger = std::make_unique<Table>((tables_.back()->mask + 1) * 2);
    for (std::uint32_t index = 0; index < count_; ++index) {
        place(larger->slots.get(), larger->mask, &at(index));
    }
    tables_.push_back(std::move(larger));
    table_.store(tables_.back().get(), std::memory_order_release);
}

} // namespace v1
} // namespace zel
