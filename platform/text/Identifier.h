// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace zel::inline v1 {

/// An identifier or nil, immutable and shared by whoever carries it; it ends with the last of them.
using Identifier = std::shared_ptr<const std::string>;

[[nodiscard]] inline Identifier makeIdentifier(const std::optional<std::string_view>& text) {
    return text ? std::make_shared<const std::string>(*text) : nullptr;
}

[[nodiscard]] inline std::optional<std::string> textOf(const Identifier& identifier) {
    return identifier ? std::optional<std::string>(*identifier) : std::nullopt;
}

/// Whether both are nil or have the same text.
[[nodiscard]] inline bool isSame(const Identifier& a, const Identifier& b) noexcept {
    return a == b || (a && b && *a == *b);
}

} // namespace zel::inline v1
