// SPDX-License-Identifier: Apache-2.0
#include "Process.h"

#include <gtest/gtest.h>

namespace zeltest {
namespace {

TEST(ToolWithoutPortal, SaysThatThePortalIsNotBuiltIn) {
    const Outcome outcome = User().run({"watch", "--source", "portal"});
    EXPECT_EQ(outcome.code, 2);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors, "zelstyle: the portal source is not built in; known: stdin\n");
}

TEST(ToolWithoutPortal, ReadsStandardInputUnlessToldOtherwise) {
    const Outcome outcome = User().run({"watch"});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.errors, "zelstyle: the portal source is not built in; reading commands from "
                              "standard input ('help' lists them)\n");
}

} // namespace
} // namespace zeltest
