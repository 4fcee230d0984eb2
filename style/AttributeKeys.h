// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/text/StringPool.h"

#include <cstdint>
#include <string_view>

namespace zel {
inline namespace v1 {

/// The place of an attribute key in the process's pool of keys; the predefined ones come first, in
/// the order of their list.
using AttributeIndex = std::uint32_t;

/// A new pool with the predefined keys.
StringPool* makeAttributeKeys();

/// The pool of attribute keys. Reading an unknown key adds nothing to it; writing one does.
inline StringPool& attributeKeys() {
    static StringPool* const pool = makeAttributeKeys(); // never destroyed: styles may end at exit
    return *pool;
}

} // namespace v1
} // namespace zel
