// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/ZelAttributeValue.h>

#include <array>
#include <atomic>
#include <bit>
#include <cstdint>
#include <optional>
#include <utility>

namespace zel::inline v1 {

/// An attribute value in six words, so that it can be read while another thread writes it: a tag
/// that says what it is, then a colour's components or a number's bits. Of any other value
/// only the tag is kept, `null` or `other`; an `other` one is looked up under the lock.
struct AttributeSlot {
    static constexpr std::uint64_t absent = 0;
    static constexpr std::uint64_t null = 1;
    static constexpr std::uint64_t other = 2;
    static constexpr std::uint64_t number = 8; ///< plus the number's kind
    static constexpr std::uint64_t color = 64; ///< from here on: the address of its colour space

    std::uint64_t tag = absent;
    std::array<double, NSColorSpace::maximumComponentCount> words{};

    static AttributeSlot of(const ZelAttributeValue& value) noexcept {
        AttributeSlot slot;
        if (const NSColor* heldColor = value.color()) {
            slot.tag = reinterpret_cast<std::uintptr_t>(heldColor->space_);
            slot.words = heldColor->components_;
        } else if (const NSNumber* heldNumber = value.number()) {
            slot.tag = number + static_cast<std::uint64_t>(heldNumber->kind_);
            slot.words[0] = std::bit_cast<double>(heldNumber->bits_);
        } else {
            slot.tag = value.isNull() ? null : other;
        }
        return slot;
    }

    [[nodiscard]] std::optional<NSColor> asColor() const noexcept {
        if (tag < color) {
            return std::nullopt;
        }
        return NSColor(*reinterpret_cast<const NSColorSpace*>(tag), words);
    }

    [[nodiscard]] std::optional<NSNumber> asNumber() const noexcept {
        if (tag < number || tag >= color) {
            return std::nullopt;
        }
        return NSNumber(static_cast<NSNumber::Kind>(tag - number),
                        std::bit_cast<std::uint64_t>(words[0]));
    }

    /// A colour or a number; nothing where there is none, the null marker or another value.
    [[nodiscard]] std::optional<ZelAttributeValue> asValue() const noexcept {
        using Value = std::optional<ZelAttributeValue>;
        if (tag >= color) [[likely]] {
            return Value(std::in_place, *asColor());
        }
        if (tag >= number) {
            return Value(std::in_place, *asNumber());
        }
        return std::nullopt;
    }
};

/// A slot that one thread writes while others read. Each word by itself is whole; the counter of
/// `MergedValues` says whether the words belong together.
class AtomicSlot {
public:
    // Acquire and release instead of fences, which the thread sanitizer doesn't know.
    [[nodiscard]] AttributeSlot load() const noexcept {
        return load(std::make_index_sequence<NSColorSpace::maximumComponentCount>());
    }
    void store(const AttributeSlot& slot) noexcept {
        tag_.store(slot.tag, std::memory_order_release);
        for (std::size_t i = 0; i < slot.words.size(); ++i) {
            words_[i].store(slot.words[i], std::memory_order_release);
        }
    }

private:
    // Word by word into registers: a loop would go through memory, and wait for it.
    template <std::size_t... Index>
    [[nodiscard]] AttributeSlot load(std::index_sequence<Index...>) const noexcept {
        return {tag_.load(std::memory_order_acquire),
                {words_[Index].load(std::memory_order_acquire)...}};
    }

    std::atomic<std::uint64_t> tag_{AttributeSlot::absent};
    std::array<std::atomic<double>, NSColorSpace::maximumComponentCount> words_{};
};

} // namespace zel::inline v1
