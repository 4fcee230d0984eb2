// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/text/TextWords.h"

#include <array>
#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace zel {
inline namespace v1 {

/// A string of a pool: lives for the process, so that its address, or its index, stands for its
/// text.
struct PooledString {
    std::string text;
    std::uint64_t hash = 0;
    std::uint32_t index = 0; ///< 0 for the pool's first string, and so on
};

/// Strings kept once each and for good: attribute keys, and the identifiers that objects carry.
/// Their number is that of a program's vocabulary, not of its objects.
/// Owns: its strings, and every table it has outgrown (together no larger than the present one).
/// Threads: any; finding takes no lock and writes nothing that other threads read.
class StringPool {
public:
    StringPool();
    ~StringPool();
    StringPool(const StringPool&) = delete;
    StringPool& operator=(const StringPool&) = delete;

    /// The pool's string of that text, or nothing.
    [[nodiscard, gnu::always_inline]] const PooledString*
    find(std::string_view text) const noexcept {
        return probe(*table_.load(std::memory_order_acquire), text, TextWords::hashOf(text));
    }
    /// The pool's string of that text, added where it is new.
    const PooledString* intern(std::string_view text);
    /// The string that was added as the index-th; it must be there.
    [[nodiscard]] const PooledString& at(std::uint32_t index) const noexcept {
        const Place place(index);
        return segments_[place.segment].load(std::memory_order_acquire)[place.offset];
    }

private:
    static constexpr std::uint32_t firstSegment = 64;

    /// Where a string stands: each segment is as large as all before it together (the first has
    /// 64).
    struct Place {
        explicit Place(std::uint32_t index) noexcept
            : segment(static_cast<std::uint32_t>(std::bit_width(index / firstSegment))),
              offset(segment == 0 ? index : index - (firstSegment << (segment - 1))) {}
        [[nodiscard]] std::size_t capacity() const noexcept {
            return segment == 0 ? firstSegment : std::size_t{firstSegment} << (segment - 1);
        }
        std::uint32_t segment;
        std::uint32_t offset;
    };

    struct Table {
        explicit Table(std::size_t capacity);
        std::size_t mask;
        std::unique_ptr<std::atomic<const PooledString*>[]> slots;
    };

    static const PooledString* probe(const Table& table, std::string_view text,
                                     std::uint64_t hash) noexcept {
        for (std::size_t at = hash & table.mask;; at = (at + 1) & table.mask) {
            const PooledString* string = table.slots[at].load(std::memory_order_acquire);
            if (string == nullptr ||
                (string->hash == hash && TextWords::isSame(string->text, text))) {
                return string;
            }
        }
    }
    PooledString& add(std::string_view text);
    void grow();

    std::atomic<const Table*> table_;
    std::array<std::atomic<PooledString*>, 27> segments_{};
    std::mutex mutex_;                                   // guards what follows, and adding
    std::vector<std::unique_ptr<Table>> tables_;         // the last one is in use
    std::vector<std::unique_ptr<PooledString[]>> owned_; // the segments
    std::uint32_t count_ = 0;
};

} // namespace v1
} // namespace zel
