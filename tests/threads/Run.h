// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <string>

namespace zeltest {

/// How often each operation was done.
using OperationCounts = std::map<std::string, std::uint64_t>;

/// Has eleven threads, the present one as the main one, use the library in every way that its
/// headers allow them, for so long; then checks what must hold when all is quiet. Ends the process,
/// after it has said why, where something is not as it must be or no thread goes on.
OperationCounts runThreads(std::chrono::milliseconds length, std::uint64_t seed);

} // namespace zeltest
