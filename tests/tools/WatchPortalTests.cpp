// SPDX-License-Identifier: Apache-2.0
#include "Process.h"

#include "../portal/FakePortal.h"
#include "../portal/PrivateBus.h"

#include <gtest/gtest.h>

#include <csignal>
#include <optional>

namespace zeltest {
namespace {

TEST(ToolPortal, WithoutABusItSaysSoAndStaysLight) {
    const User user;
    Process watch(ZELSTYLE_COMMAND, {"watch", "--source", "portal"}, user.surroundings());
    ASSERT_TRUE(watch.readUntil("window      initial  main  light"));
    ASSERT_TRUE(watch.readUntil("statusIcon  initial  main  light"));
    // The thread sanitizer loses a signal that comes while a program's first wait begins.
    ASSERT_TRUE(watch.waitUntilItWaits());
    watch.signal(SIGTERM);
    const Outcome outcome = watch.finish();
    EXPECT_EQ(outcome.code, 0);
    EXPECT_TRUE(outcome.errors.starts_with("zelstyle: portal: no bus: ")) << outcome.errors;
}

/// A session bus with a portal that says dark.
class ToolPortalOnABus : public testing::Test {
protected:
    User user;
    PrivateBus bus;
    std::optional<FakePortal> portal;
    std::optional<Process> watch;

    void SetUp() override {
        if (!PrivateBus::isInstalled()) {
            GTEST_SKIP() << "dbus-daemon is not installed";
        }
        ASSERT_TRUE(bus.start());
        portal.emplace(bus.address());
        portal->takeName();
        portal->setScheme(1);
    }
    void run(const Arguments& arguments) {
        watch.emplace(ZELSTYLE_COMMAND, arguments,
                      user.surroundings({{"DBUS_SESSION_BUS_ADDRESS", bus.address()}}));
    }
    /// The next line, the portal answering while it is waited for.
    std::string nextLine() {
        return watch->readLine(portal->fileDescriptor(), [this] { portal->process(); })
            .value_or("nothing");
    }
    std::string lineWith(std::string_view beginning) {
        std::string line;
        do {
            line = nextLine();
        } while (line != "nothing" && !line.starts_with(beginning));
        return line;
    }
};

TEST_F(ToolPortalOnABus, TheFirstStylesAreTheDesktops) {
    run({"watch", "--source", "portal", "--wait", "20000"});
    EXPECT_EQ(nextLine(), "window      initial  main  dark   background #000000    "
                          "text #FFFFFF    accent #007AFF");
}

TEST_F(ToolPortalOnABus, FollowsTheDesktop) {
    run({"watch", "--source", "portal", "--wait", "20000"});
    ASSERT_NE(lineWith("statusIcon  initial"), "nothing");
    portal->setScheme(2);
    portal->emitChange(2);
    EXPECT_EQ(nextLine(), "window      changed  main  light  background #FFFFFF    "
                          "text #000000    accent #007AFF");
    watch->signal(SIGTERM);
    const Outcome outcome = watch->finish();
    EXPECT_EQ(outcome.code, 0);
    EXPECT_TRUE(outcome.errors.starts_with("zelstyle: portal: following")) << outcome.errors;
}

TEST_F(ToolPortalOnABus, ABusThatAnswersIsPreferredToStandardInput) {
    run({"watch", "--wait", "20000"});
    watch->closeInput(); // would end it, if it were read
    ASSERT_NE(lineWith("statusIcon  initial  main  dark "), "nothing");
    portal->setScheme(2);
    portal->emitChange(2);
    EXPECT_NE(lineWith("statusIcon  changed  main  light"), "nothing");
}

TEST_F(ToolPortalOnABus, SaysWhenItLosesTheDesktop) {
    run({"watch", "--source", "portal", "--wait", "20000"});
    ASSERT_NE(lineWith("statusIcon  initial  main  dark "), "nothing");
    portal.reset();
    bus.stop();
    ASSERT_TRUE(watch->waitForError("zelstyle: portal: lost"));
    watch->signal(SIGTERM);
    EXPECT_EQ(watch->finish().code, 0);
}

} // namespace
} // namespace zeltest
