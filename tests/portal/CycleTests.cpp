// SPDX-License-Identifier: Apache-2.0
#include "PortalFixture.h"

#include <gtest/gtest-spi.h>

#include <filesystem>
#include <iterator>
#include <thread>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

using namespace zeltest;

namespace {

/// What the process has: bytes that the C library has given out, and open descriptors.
struct Holdings {
    std::size_t bytes = 0;
    std::ptrdiff_t descriptors = 0;
};

Holdings holdings() {
    namespace files = std::filesystem;
    Holdings result;
    result.descriptors = std::distance(files::directory_iterator("/proc/self/fd"), {});
#if defined(__GLIBC__)
    const auto info = mallinfo2();
    result.bytes = info.uordblks + info.hblkhd;
#endif
    return result;
}

} // namespace

/// Hosts that begin and cease to follow, over and over.
class CycleTests : public PortalTests {
protected:
    /// On a thread of its own: what a thread keeps for its next allocations counts as given out
    /// until it ends.
    void repeat(int times) {
        std::thread([&] {
            for (int time = 0; time < times && !HasFailure(); ++time) {
                portal->setScheme(time % 2 == 0 ? 1 : 0);
                cycle();
            }
        }).join();
    }

private:
    void cycle() {
        const std::string address = host->options.busAddress;
        follow();
        host->refresh();
        host->process(); // asks
        host->stop();
        host->start();
        host->start(); // afresh, while the connection is still under way
        host->process();
        host->renew();
        host->options.busAddress = "unix:path=" + bus.folder() + "/nothing";
        host->start();
        host->options.busAddress = address;
        host->heard.clear();
    }
};

TEST_F(CycleTests, MemoryAndDescriptorsStayAsTheyWere) {
    constexpr std::size_t allowed = 1024; // tables that happen to be larger at the one moment
    repeat(10);
    const Holdings before = holdings();
    repeat(40);
    const Holdings after = holdings();
    EXPECT_EQ(after.descriptors, before.descriptors);
    EXPECT_LE(after.bytes, before.bytes + allowed);
}

// How long would tell little: a bus that is there answers within a millisecond.
TEST_F(CycleTests, NoOperationSleeps) {
    repeat(40);
    EXPECT_EQ(host->costs.size(), 5U);
    for (const auto& [operation, cost] : host->costs) {
        // In the kernel, for reasons of its own.
        EXPECT_LE(cost.sleepingCalls, cost.calls / 20) << operation;
    }
}

TEST_F(CycleTests, AnOperationThatWaitsIsNoticed) {
    if (!Usage::knowsSleep()) {
        GTEST_SKIP() << "this kernel doesn't tell a wait from a lack of processors";
    }
    host->options.statusChanged = [](ZelPortalStatus, const std::string&) {
        std::this_thread::sleep_for(150ms);
    };
    host->start();
    EXPECT_NONFATAL_FAILURE(host->expectThatNothingWasWaitedFor(), "start");
    host.reset();
}
