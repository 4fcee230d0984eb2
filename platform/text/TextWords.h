// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace zel {
inline namespace v1 {

/// Hashing and comparing short texts, such as attribute keys, eight bytes at a time. In the header,
/// since a call of the C library's functions for as many bytes as there happen to be would cost
/// more than the rest of a read by key.
struct TextWords {
    // Multiplications with the golden ratio's fraction and another odd number mix upwards, the
    // shift brings the high bits down to where a mask looks. The first and the last word, which
    // overlap in a text of less than sixteen bytes, don't wait for each other.
    [[nodiscard]] static std::uint64_t hashOf(std::string_view text) noexcept {
        constexpr std::uint64_t golden = 0x9E3779B97F4A7C15ULL;
        constexpr std::uint64_t other = 0xD6E8FEB86659FD93ULL;
        const char* const bytes = text.data();
        const std::size_t size = text.size();
        std::uint64_t hash = size;
        if (size >= 8) [[likely]] {
            hash =
                (hash ^ wordAt(bytes)) * golden ^ std::rotl(wordAt(bytes + size - 8) * other, 32);
            for (std::size_t at = 8; at + 8 < size; at += 8) {
                hash = std::rotl(hash, 21) + wordAt(bytes + at) * golden;
            }
        } else {
            hash = (hash ^ shortWord(bytes, size)) * golden;
        }
        hash = (hash ^ hash >> 32) * golden;
        return hash ^ hash >> 32;
    }

    [[nodiscard]] static bool isSame(std::string_view a, std::string_view b) noexcept {
        const std::size_t size = a.size();
        if (size != b.size()) {
            return false;
        }
        const char* const left = a.data();
        const char* const right = b.data();
        if (size < 8) [[unlikely]] {
            return shortWord(left, size) == shortWord(right, size);
        }
        if (wordAt(left) != wordAt(right) || wordAt(left + size - 8) != wordAt(right + size - 8)) {
            return false;
        }
        for (std::size_t at = 8; at + 8 < size; at += 8) {
            if (wordAt(left + at) != wordAt(right + at)) {
                return false;
            }
        }
        return true;
    }

private:
    static std::uint64_t wordAt(const char* bytes) noexcept {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes, sizeof word);
        return word;
    }

    // All of a text of less than eight bytes.
    static std::uint64_t shortWord(const char* bytes, std::size_t size) noexcept {
        if (size >= 4) {
            std::uint32_t first = 0;
            std::uint32_t last = 0;
            std::memcpy(&first, bytes, sizeof first);
            std::memcpy(&last, bytes + size - 4, sizeof last);
            return std::uint64_t{last} << 32 | first;
        }
        std::uint64_t word = 0;
        for (std::size_t i = 0; i < size; ++i) {
            word = word << 8 | static_cast<unsigned char>(bytes[i]);
        }
        return word;
    }
};

} // namespace v1
} // namespace zel
