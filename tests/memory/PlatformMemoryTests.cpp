// SPDX-License-Identifier: Apache-2.0
#include "tests/memory/FailingMemory.h"
#include "tests/support/Styling.h"

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace zeltest {
namespace {

using namespace zel;

using PlatformMemoryTests = StylingTests;

class CountingObserver : public NSObject {
public:
    int calls = 0;

private:
    void observeValueForKeyPath(std::string_view /*keyPath*/, NSObject& /*ofObject*/,
                                const NSKeyValueChange& /*change*/,
                                const void* /*context*/) override {
        ++calls;
    }
};

TEST_F(PlatformMemoryTests, AnObservationThatNoMemoryIsThereForIsNotMade) {
    constexpr std::string_view key = "a key of more letters than fit into a string";
    const auto object = makePlain();
    const auto observer = alloc<CountingObserver>();
    const std::size_t failures = runShortOfMemory(
        [&] { object->addObserver(observer, key, NSKeyValueObservingOptions::Default, nullptr); },
        [&] {
            object->didChangeValueForKey(key);
            EXPECT_EQ(observer->calls, 0);
        });
    EXPECT_GE(failures, 2U); // the object's first, and the text
    runElsewhere([&] { object->didChangeValueForKey(key); });
    EXPECT_EQ(observer->calls, 1);
}

TEST_F(PlatformMemoryTests, ADefaultsFileThatNoMemoryIsThereForStaysWhole) {
    const std::string folder = testing::TempDir() + "defaults-memory";
    std::filesystem::create_directories(folder + "/memory");
    const std::string path = folder + "/memory/defaults.conf";
    ::setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
    NSProcessInfo::setProcessName("memory");
    const std::string before = "mode = \"a text of more letters than fit into a string\"\n";
    std::ofstream(path) << before;
    bool isWritten = false;
    const std::size_t failures = runShortOfMemory(
        [&] {
            NSUserDefaults defaults;
            (void)defaults.objectForKey("mode");
            isWritten = defaults.setObject(NSNumber::numberWithLong(1), "mode");
        },
        [&] {
            std::stringstream text;
            text << std::ifstream(path).rdbuf();
            EXPECT_EQ(text.str(), isWritten ? "mode = 1\n" : before);
        });
    EXPECT_GE(failures, 10U);
    EXPECT_TRUE(isWritten);
    std::filesystem::remove_all(folder);
}

TEST_F(PlatformMemoryTests, AnObserverThatTheCentreHasNoMemoryForHearsNothing) {
    constexpr std::string_view name = "a name of more letters than fit into a string";
    NSNotificationCenter center;
    const auto observer = makePlain();
    int calls = 0;
    const NSNotificationCenter::Callback callback = [&](const NSNotification&) { ++calls; };
    const std::size_t failures =
        runShortOfMemory([&] { center.addObserver(observer, callback, name, nullptr); },
                         [&] {
                             center.postNotificationName(name, nullptr);
                             EXPECT_EQ(calls, 0);
                         });
    EXPECT_GE(failures, 3U);
    runElsewhere([&] { center.postNotificationName(name, nullptr); });
    EXPECT_EQ(calls, 1);
}

TEST_F(PlatformMemoryTests, APostThatNoMemoryIsThereForReachesNobody) {
    constexpr std::string_view name = "a name of more letters than fit into a string";
    NSNotificationCenter center;
    const auto observer = makePlain();
    int calls = 0;
    center.addObserver(
        observer, [&](const NSNotification&) { ++calls; }, name, nullptr);
    const std::size_t failures =
        runShortOfMemory([&] { center.postNotificationName(name, nullptr); },
                         [&] {
                             EXPECT_EQ(calls, 0);
                             center.postNotificationName(name, nullptr);
                             EXPECT_EQ(calls, 1);
                             calls = 0;
                         });
    EXPECT_GE(failures, 3U);
    EXPECT_EQ(calls, 1);
}

TEST_F(PlatformMemoryTests, ATaskThatNoMemoryIsThereForIsNotQueued) {
    NSMainQueue queue;
    constexpr std::size_t count = 100; // so many that the queue grows several times
    std::array<std::size_t, count> ran{};
    std::size_t next = 0;
    std::size_t failures = 0;
    for (std::size_t i = 0; i < count; ++i) {
        failures += runShortOfMemory([&] { queue.async([&ran, &next, i] { ran[next++] = i; }); },
                                     [&] { queue.setWakeHook(nullptr); });
    }
    EXPECT_GE(failures, count);
    std::size_t drained = 0;
    runElsewhere([&] { drained = queue.drain(); });
    EXPECT_EQ(drained, count);
    for (std::size_t i = 0; i < count; ++i) {
        EXPECT_EQ(ran[i], i);
    }
}

} // namespace
} // namespace zeltest
