// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/StringPool.h"

#include <cstdint>
#include <string_view>

namespace zel {
inline namespace v1 {

/// The place of an attribute key in the process's pool of keys; the predefined ones come first, in
/// the order of their list.
using AttributeIndex = std::uint32_t;

/// The pool of attribute keys. Reading an unknown key adds nothing to it; writing one does.
StringPool& attributeKeys();

} // namespace v1
} // namespace zel
