// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/StringPool.h"

#include <atomic>
#include <optional>
#include <string>
#include <string_view>

namespace zel {
inline namespace v1 {

/// The pool of the identifiers that objects, styles and schemes carry.
StringPool& identifierPool();

/// An identifier, or nil, that any thread reads and writes; a reader sees the old or the new one.
class AtomicIdentifier {
public:
    [[nodiscard]] const PooledString* load() const noexcept {
        return string_.load(std::memory_order_acquire);
    }
    void store(std::optional<std::string_view> identifier) {
        string_.store(identifier ? identifierPool().intern(*identifier) : nullptr,
                      std::memory_order_release);
    }
    [[nodiscard]] std::optional<std::string> copy() const {
        const PooledString* string = load();
        return string ? std::optional<std::string>(string->text) : std::nullopt;
    }

private:
    std::atomic<const PooledString*> string_{nullptr};
};

} // namespace v1
} // namespace zel
