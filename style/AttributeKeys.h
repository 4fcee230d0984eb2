// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace zel::inline v1 {

/// The place of a predefined attribute in the list of them.
using AttributeIndex = std::uint32_t;

/// The place of the predefined attribute with that key; nothing for any other string.
std::optional<AttributeIndex> indexOfAttribute(std::string_view key);

} // namespace zel::inline v1
