// SPDX-License-Identifier: Apache-2.0
#include "platform/text/Identifier.h"

namespace zel {
inline namespace v1 {

StringPool& identifierPool() {
    static auto* const pool = new StringPool; // never destroyed: objects refer to its strings
    return *pool;
}

} // namespace v1
} // namespace zel
