// SPDX-License-Identifier: Apache-2.0
#include "UserDefaultsTestsFolder.h"

#include <algorithm>
#include <csignal>
#include <ctime>
#include <random>
#include <set>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>

namespace zel_tests {
namespace {

using zel::NSNumber;
using zel::NSUserDefaults;
using zel::NSUserDefaultsValue;

struct SharedDefaultsFile : UserDefaultsFolder {
    /// Dates the file back, as if nobody had touched it for an hour.
    void age() const {
        const timespec hourAgo{std::time(nullptr) - 3600, 0};
        const timespec times[] = {hourAgo, hourAgo};
        ASSERT_EQ(::utimensat(AT_FDCWD, file().c_str(), times, 0), 0);
    }
};

TEST_F(SharedDefaultsFile, WhatAnotherWritesIsReadAtOnce) {
    NSUserDefaults reader;
    for (int round = 0; round < 20; ++round) {
        const std::string value = std::to_string(1000 + round);
        ASSERT_TRUE(NSUserDefaults().setObject(value, "k"));
        EXPECT_EQ(stringIn(reader, "k"), value);
    }
}

TEST_F(SharedDefaultsFile, AnEditWithinTheSameTickOfTheFilesClockIsSeen) {
    NSUserDefaults reader;
    for (int round = 0; round < 500; ++round) {
        const std::string value = std::to_string(1000 + round); // all of one length
        write("k = \"" + value + "\"\n");
        ASSERT_EQ(stringIn(reader, "k"), value);
    }
}

TEST_F(SharedDefaultsFile, AnEditOfAFileReadLongAgoIsSeen) {
    write("k = \"old\"\n");
    age();
    NSUserDefaults reader;
    EXPECT_EQ(stringIn(reader, "k"), "old");
    EXPECT_EQ(stringIn(reader, "k"), "old");
    write("k = \"new\"\n");
    EXPECT_EQ(stringIn(reader, "k"), "new");
}

TEST_F(SharedDefaultsFile, AnEditThatKeepsLengthAndDateIsSeen) {
    write("k = \"old\"\n");
    age();
    NSUserDefaults reader;
    EXPECT_EQ(stringIn(reader, "k"), "old");
    write("k = \"new\"\n");
    age();
    EXPECT_EQ(stringIn(reader, "k"), "new");
}

TEST_F(SharedDefaultsFile, ADeletedFileHoldsNothingAnyMore) {
    write("k = \"old\"\n");
    age();
    NSUserDefaults reader;
    EXPECT_EQ(stringIn(reader, "k"), "old");
    std::filesystem::remove(file());
    EXPECT_EQ(stringIn(reader, "k"), "(none)");
}

/// Writes, again where a busy machine had it wait for the others for too long.
bool isWrittenInTheEnd(const std::string& value, const std::string& key) {
    for (int attempt = 0; attempt < 5; ++attempt) {
        if (NSUserDefaults().setObject(value, key)) {
            return true;
        }
    }
    return false;
}

TEST_F(SharedDefaultsFile, ProcessesThatWriteTheirOwnKeysLoseNothing) {
    constexpr int processes = 8;
    constexpr int keys = 20;
    write("# kept\n");
    std::vector<pid_t> children;
    for (int process = 0; process < processes; ++process) {
        const pid_t child = ::fork();
        if (child == 0) {
            bool written = true;
            for (int key = 0; key < keys; ++key) {
                const std::string name = std::to_string(process) + '.' + std::to_string(key);
                written = isWrittenInTheEnd("of " + name, name) && written;
            }
            zeltest::endAtOnce(written ? 42 : 1);
        }
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 42);
    }
    const NSUserDefaults reader;
    for (int process = 0; process < processes; ++process) {
        for (int key = 0; key < keys; ++key) {
            const std::string name = std::to_string(process) + '.' + std::to_string(key);
            EXPECT_EQ(stringIn(reader, name), "of " + name);
        }
    }
    EXPECT_TRUE(text().value_or("").starts_with("# kept\n"));
    EXPECT_FALSE(std::filesystem::exists(file() + ".tmp"));
}

TEST_F(SharedDefaultsFile, ThreadsThatWriteTheirOwnKeysLoseNothing) {
    constexpr int count = 4;
    constexpr int keys = 10;
    NSUserDefaults& defaults = NSUserDefaults::standardUserDefaults();
    std::vector<std::thread> threads;
    for (int thread = 0; thread < count; ++thread) {
        threads.emplace_back([thread, &defaults] {
            for (int key = 0; key < keys; ++key) {
                const std::string name = std::to_string(thread) + '.' + std::to_string(key);
                EXPECT_TRUE(defaults.setObject("of " + name, name));
                EXPECT_EQ(stringIn(defaults, name), "of " + name);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (int thread = 0; thread < count; ++thread) {
        for (int key = 0; key < keys; ++key) {
            const std::string name = std::to_string(thread) + '.' + std::to_string(key);
            EXPECT_EQ(storedString(name), "of " + name);
        }
    }
}

/// How often this process has the file open.
long openCount(const std::string& path) {
    const std::filesystem::directory_iterator descriptors("/proc/self/fd");
    return std::count_if(begin(descriptors), end(descriptors), [&](const auto& entry) {
        std::error_code gone;
        return std::filesystem::read_symlink(entry.path(), gone) == path;
    });
}

int openLocked(const std::string& path) {
    const int lock = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    EXPECT_EQ(::flock(lock, LOCK_EX | LOCK_NB), 0);
    return lock;
}

TEST_F(SharedDefaultsFile, ALockOnADeletedLockFileIsNone) {
    write("k = \"old\"\n");
    const std::string path = file() + ".lock";
    const int first = openLocked(path);
    bool written = true;
    std::thread writer([&] { written = NSUserDefaults().setObject("new", "k"); });
    while (openCount(path) < 2) {
        std::this_thread::yield();
    }
    // The writer waits for a file that nobody else will find any more.
    std::filesystem::remove(path);
    const int second = openLocked(path);
    ::close(first);
    writer.join();
    EXPECT_FALSE(written);
    EXPECT_EQ(text(), "k = \"old\"\n");
    ::close(second);
}

/// Writes two values in turn until it is killed.
[[noreturn]] void writeForever(const std::string& one, const std::string& other) {
    NSUserDefaults defaults;
    for (;;) {
        defaults.setObject(one, "k");
        defaults.setObject(other, "k");
    }
}

TEST_F(SharedDefaultsFile, AWriterKilledAtAnyPointLeavesTheOldFileOrTheNewOne) {
    // Large enough that writing takes a while, and that half a file would be noticed.
    const std::string one(60'000, 'a');
    const std::string other(90'000, 'b');
    const std::string head = "# kept\nnumber = 7u\n";
    write(head);
    ASSERT_TRUE(NSUserDefaults().setObject(one, "k"));
    const std::string oldText = head + "k = \"" + one + "\"\n";
    const std::string newText = head + "k = \"" + other + "\"\n";
    const std::set<std::string> allowed = {"defaults.conf", "defaults.conf.lock",
                                           "defaults.conf.tmp"};
    std::minstd_rand random(4711);
    for (int round = 0; round < 300; ++round) {
        const pid_t child = ::fork();
        if (child == 0) {
            writeForever(one, other);
        }
        ::usleep(static_cast<useconds_t>(random() % 6000));
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        const std::string found = text().value_or("(no file)");
        ASSERT_TRUE(found == oldText || found == newText) << "in round " << round;
        for (const std::string& name : names()) {
            ASSERT_TRUE(allowed.contains(name)) << name;
        }
    }
    EXPECT_TRUE(NSUserDefaults().setObject("end", "k"));
    EXPECT_EQ(text(), head + "k = \"end\"\n");
    EXPECT_FALSE(std::filesystem::exists(file() + ".tmp"));
}

} // namespace
} // namespace zel_tests
