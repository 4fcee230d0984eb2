// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <mutex>

namespace zel {
inline namespace v1 {

/// The lock of a table or an object: a thread may take it again while it holds it. Taken only by
/// scoped guards, so that an exception that passes releases it.
using RecursiveLock = std::recursive_mutex;
using RecursiveGuard = std::unique_lock<RecursiveLock>;

} // namespace v1
} // namespace zel
