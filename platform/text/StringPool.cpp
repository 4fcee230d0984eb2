// SPDX-License-Identifier: Apache-2.0
#include "platform/text/StringPool.h"

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
    added = PooledString{std::string(text), TextWords::hashOf(text), count_};
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
