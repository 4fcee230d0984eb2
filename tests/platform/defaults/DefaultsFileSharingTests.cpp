// SPDX-License-Identifier: Apache-2.0
// Several readers and writers of one file. A hundred processes that write it and are killed are in
// tests/faults.
#include "DefaultsFolder.h"
#include "tests/platform/SystemCalls.h"

#include <cerrno>
#include <csignal>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>

namespace zel_tests {
namespace {

using zel::NSUserDefaults;

using SharedDefaultsFile = DefaultsFolder;

TEST_F(SharedDefaultsFile, IsReadAfreshEachTime) {
    const NSUserDefaults reader;
    for (int round = 0; round < 100; ++round) {
        const std::string value = std::to_string(1000 + round); // all of one length
        write("k = \"" + value + "\"\n");
        ASSERT_EQ(stringIn(reader, "k"), value);
    }
    std::filesystem::remove(file());
    EXPECT_EQ(stringIn(reader, "k"), "(none)");
}

TEST_F(SharedDefaultsFile, LosesNothingThatThreadsWriteAtOnce) {
    write("# kept\n");
    NSUserDefaults& defaults = NSUserDefaults::standardUserDefaults();
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([thread, &defaults] {
            for (int key = 0; key < 10; ++key) {
                const std::string name = std::to_string(thread) + '.' + std::to_string(key);
                EXPECT_TRUE(defaults.setObject("of " + name, name));
                EXPECT_EQ(stringIn(defaults, name), "of " + name);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_TRUE(text().starts_with("# kept\n"));
    for (int name = 0; name < 40; ++name) {
        const std::string key = std::to_string(name / 10) + '.' + std::to_string(name % 10);
        EXPECT_EQ(storedString(key), "of " + key);
    }
}

TEST_F(SharedDefaultsFile, ThatIsNeverLetGoDelaysAWriterOnlyAndNotForEver) {
    write("k = \"old\"\n");
    const int lock = ::open(lockFile().c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    ASSERT_EQ(::flock(lock, LOCK_EX), 0);
    EXPECT_EQ(storedString("k"), "old");
    NSUserDefaults defaults;
    const auto start = Clock::now();
    EXPECT_FALSE(defaults.setObject("new", "k"));
    const auto waited = Clock::now() - start;
    EXPECT_GE(waited, waitForAnother); // or what another is done with by then would be lost
    EXPECT_LT(waited, 2 * waitForAnother);
    EXPECT_EQ(stringIn(defaults, "k"), "new");
    EXPECT_EQ(storedString("k"), "old");
    ASSERT_EQ(::flock(lock, LOCK_UN), 0);
    EXPECT_TRUE(defaults.setObject("newer", "k"));
    EXPECT_EQ(storedString("k"), "newer");
    ::close(lock);
}

TEST_F(SharedDefaultsFile, IsLockedAnewWhereAnotherReplacesTheLockFile) {
    write("k = \"old\"\n");
    int locks = 0;
    const Intervention race(SystemCall::Flock, [&] {
        if (++locks <= 2) {
            std::filesystem::rename(lockFile(), lockFile() + std::to_string(locks));
            std::ofstream(lockFile()) << "";
        }
        return 0;
    });
    EXPECT_TRUE(NSUserDefaults().setObject("new", "k"));
    EXPECT_EQ(locks, 4); // acquired twice in vain and once for good, and released
    EXPECT_EQ(text(), "k = \"new\"\n");
}

TEST_F(SharedDefaultsFile, IsLetGoThoughAForkedProcessLivesOn) {
    pid_t child = -1;
    {
        const Intervention fork(SystemCall::Fsync, [&] {
            child = child < 0 ? ::fork() : child;
            while (child == 0) {
                ::pause();
            }
            return 0;
        });
        write("k = \"old\"\n");
        EXPECT_TRUE(NSUserDefaults().setObject("new", "k"));
    }
    EXPECT_TRUE(NSUserDefaults().setObject("newer", "k"));
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
}

} // namespace
} // namespace zel_tests
