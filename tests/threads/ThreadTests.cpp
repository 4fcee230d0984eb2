// SPDX-License-Identifier: Apache-2.0
#include "tests/threads/Run.h"

#include <gtest/gtest.h>

namespace zeltest {
namespace {

using namespace std::chrono_literals;

TEST(Threads, MayDoAtOnceWhatTheHeadersAllowThem) {
    const OperationCounts counts = runThreads(3s, 1);
    EXPECT_GE(counts.size(), 45U) << "kinds of operations";
}

} // namespace
} // namespace zeltest
