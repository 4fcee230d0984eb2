// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/text/StringPool.h"

#include <atomic>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zel {
inline namespace v1 {

/// The pool of the identifiers that objects, styles and schemes carry.
StringPool& identifierPool();

/// An identifier of the pool, or nil, in four bytes: equal ones are the same identifier.
class IdentifierReference {
public:
    constexpr IdentifierReference() noexcept = default;
    explicit IdentifierReference(std::optional<std::string_view> identifier)
        : number_(identifier ? identifierPool().intern(*identifier)->index + 1 : 0) {}

    [[nodiscard]] explicit operator bool() const noexcept { return number_ != 0; }
    /// The text; the identifier must not be nil.
    [[nodiscard]] const std::string& text() const noexcept {
        return identifierPool().at(number_ - 1).text;
    }
    /// 0 for nil.
    [[nodiscard]] std::uint32_t number() const noexcept { return number_; }

    friend bool operator==(IdentifierReference, IdentifierReference) noexcept = default;

private:
    std::uint32_t number_ = 0;
};

/// An identifier, or nil, that any thread reads and writes; a reader sees the old or the new one.
class AtomicIdentifier {
public:
    [[nodiscard]] IdentifierReference load() const noexcept {
        return reference_.load(std::memory_order_acquire);
    }
    void store(std::optional<std::string_view> identifier) {
        reference_.store(IdentifierReference(identifier), std::memory_order_release);
    }
    [[nodiscard]] std::optional<std::string> copy() const {
        const IdentifierReference reference = load();
        return reference ? std::optional<std::string>(reference.text()) : std::nullopt;
    }

private:
    std::atomic<IdentifierReference> reference_{};
};

} // namespace v1
} // namespace zel
