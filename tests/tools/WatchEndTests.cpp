// SPDX-License-Identifier: Apache-2.0
#include "Process.h"

#include <gtest/gtest.h>

#include <csignal>

namespace zeltest {
namespace {

/// A watch that has delivered the first styles and waits.
class ToolEnd : public testing::Test {
protected:
    User user;
    Process watch{ZELSTYLE_COMMAND, {"watch", "--source", "stdin"}, user.surroundings()};

    void SetUp() override { ASSERT_TRUE(watch.readUntil("statusIcon  initial")); }
};

TEST_F(ToolEnd, TheEndOfTheInputIsTheEnd) {
    const Outcome outcome = watch.finish();
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.errors, "");
}

TEST(ToolEndBySignal, InterruptAndTerminationEndItCleanly) {
    const User user;
    for (const int signal : {SIGINT, SIGTERM}) {
        Process watch(ZELSTYLE_COMMAND, {"watch", "--source", "stdin"}, user.surroundings());
        ASSERT_TRUE(watch.readUntil("statusIcon  initial"));
        watch.signal(signal);
        // Its output ends, although its input is still open.
        EXPECT_EQ(watch.readLine(), std::nullopt);
        const Outcome outcome = watch.finish();
        EXPECT_EQ(outcome.code, 0);
        EXPECT_EQ(outcome.errors, "");
    }
}

TEST_F(ToolEnd, AReaderThatGoesAwayEndsItAtOnceAndQuietly) {
    watch.closeOutput();
    // The input stays open until it has ended: waiting for a line of it would last for ever.
    const Outcome outcome = watch.finishWithOpenInput();
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.errors, "");
}

TEST(ToolEndByReader, AReaderThatWasNeverThereIsNoFailure) {
    const User user;
    for (const Arguments& arguments :
         {Arguments{"palette"}, Arguments{"demo"}, Arguments{"mode"}}) {
        Process process(ZELSTYLE_COMMAND, arguments, user.surroundings());
        process.closeOutput();
        const Outcome outcome = process.finish();
        EXPECT_EQ(outcome.code, 0) << arguments.front();
        EXPECT_EQ(outcome.errors, "");
    }
}

} // namespace
} // namespace zeltest
