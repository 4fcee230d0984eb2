// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace zel {
inline namespace v1 {

/// A string of a pool: lives for the process, so that its address stands for its text.
struct PooledString {
    std::string text;
    std::uint64_t hash;
    std::uint32_t index; ///< 0 for the pool's first string, and so on
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
    [[nodiscard]] const PooledString* find(std::string_view text) const noexcept {
        return probe(*table_.load(std::memory_order_acquire), text, hashOf(text));
    }
    /// The pool's string of that text, added where it is new.
    const PooledString* intern(std::string_view text);
    /// The string that was added as the index-th; it must be there.
    [[nodiscard]] const PooledString& at(std::uint32_t index) const;

    [[nodiscard]] static std::uint64_t hashOf(std::string_view text) noexcept;

private:
    struct Table {
        explicit Table(std::size_t capacity);
        std::size_t mask;
        std::unique_ptr<std::atomic<const PooledString*>[]> slots;
    };

    static const PooledString* probe(const Table& table, std::string_view text,
                                     std::uint64_t hash) noexcept {
        for (std::size_t at = hash & table.mask;; at = (at + 1) & table.mask) {
            const PooledString* string = table.slots[at].load(std::memory_order_acquire);
            if (string == nullptr || (string->hash == hash && string->text == text)) {
                return string;
            }
        }
    }
    void grow();

    std::atomic<const Table*> table_;
    mutable std::mutex mutex_;                         // guards what follows, and adding
    std::vector<std::unique_ptr<Table>> tables_;       // the last one is in use
    std::vector<std::unique_ptr<PooledString>> strings_; // by index
};

} // namespace v1
} // namespace zel
