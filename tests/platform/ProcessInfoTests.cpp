// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/NSProcessInfo.h>

#include "tests/support/Counts.h"

#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>

#include <unistd.h>

namespace zel_tests {
namespace {

using zel::NSProcessInfo;

constexpr const char* kSayName = "PROCESS_INFO_TESTS_SAY_NAME";

/// A copy of this program that is told to says its name while it starts, before main, and after
/// its file has been deleted.
const bool told = [] {
    if (std::getenv(kSayName) != nullptr) {
        std::error_code ignored;
        std::filesystem::remove(std::filesystem::read_symlink("/proc/self/exe"), ignored);
        std::fputs(NSProcessInfo::processName().c_str(), stdout);
        std::fflush(stdout);
        zeltest::endAtOnce(0);
    }
    return false;
}();

/// What a copy of this program under the given path says its name is.
std::string nameOfCopy(const std::string& path) {
    std::filesystem::copy_file("/proc/self/exe", path);
    ::setenv(kSayName, "1", 1);
    FILE* const output = ::popen(("'" + path + "'").c_str(), "r");
    ::unsetenv(kSayName);
    std::string name;
    for (int c = std::fgetc(output); c != EOF; c = std::fgetc(output)) {
        name += static_cast<char>(c);
    }
    ::pclose(output);
    return name;
}

TEST(ProcessName, IsTheProgramsFileNameAlsoBeforeMainAndAfterItsDeletion) {
    ASSERT_FALSE(told);
    std::string folder = ::testing::TempDir() + "process-XXXXXX";
    ASSERT_NE(::mkdtemp(folder.data()), nullptr);
    EXPECT_EQ(nameOfCopy(folder + "/Sketch Book"), "Sketch Book");
    EXPECT_FALSE(std::filesystem::exists(folder + "/Sketch Book"));
    std::filesystem::remove_all(folder);
}

TEST(ProcessName, IsWhatTheHostSets) {
    const std::string programName = NSProcessInfo::processName();
    EXPECT_FALSE(programName.empty());
    NSProcessInfo::setProcessName("Painter");
    EXPECT_EQ(NSProcessInfo::processName(), "Painter");
    NSProcessInfo::setProcessName("a/b");
    EXPECT_EQ(NSProcessInfo::processName(), "a/b");
    NSProcessInfo::setProcessName("");
    EXPECT_EQ(NSProcessInfo::processName(), programName);
}

TEST(OperatingSystemVersion, IsTheFirstWithADarkAppearanceUnlessTheHostSetsAnother) {
    EXPECT_TRUE(NSProcessInfo::isOperatingSystemAtLeastVersion({10, 14, 0}));
    EXPECT_TRUE(NSProcessInfo::isOperatingSystemAtLeastVersion({10, 13, 6}));
    EXPECT_FALSE(NSProcessInfo::isOperatingSystemAtLeastVersion({10, 14, 1}));
    EXPECT_FALSE(NSProcessInfo::isOperatingSystemAtLeastVersion({11, 0, 0}));
}

TEST(OperatingSystemVersion, ComparesMajorBeforeMinorBeforePatch) {
    NSProcessInfo::setOperatingSystemVersion({11, 2, 3});
    EXPECT_TRUE(NSProcessInfo::isOperatingSystemAtLeastVersion({10, 99, 99}));
    EXPECT_TRUE(NSProcessInfo::isOperatingSystemAtLeastVersion({11, 1, 99}));
    EXPECT_TRUE(NSProcessInfo::isOperatingSystemAtLeastVersion({11, 2, 3}));
    EXPECT_FALSE(NSProcessInfo::isOperatingSystemAtLeastVersion({11, 2, 4}));
    EXPECT_FALSE(NSProcessInfo::isOperatingSystemAtLeastVersion({11, 3, 0}));
    EXPECT_FALSE(NSProcessInfo::isOperatingSystemAtLeastVersion({12, 0, 0}));
}

TEST(ProcessInfo, IsNeverSeenHalfChanged) {
    NSProcessInfo::setProcessName(std::string(100, 'a'));
    NSProcessInfo::setOperatingSystemVersion({1, 9, 9});
    std::thread writer([] {
        for (int i = 0; i < 5000; ++i) {
            NSProcessInfo::setProcessName(std::string(100, i % 2 == 0 ? 'b' : 'a'));
            NSProcessInfo::setOperatingSystemVersion(i % 2 == 0
                                                         ? zel::NSOperatingSystemVersion{2, 0, 0}
                                                         : zel::NSOperatingSystemVersion{1, 9, 9});
        }
    });
    for (int i = 0; i < 5000; ++i) {
        const std::string name = NSProcessInfo::processName();
        EXPECT_TRUE(name == std::string(100, 'a') || name == std::string(100, 'b'));
        EXPECT_FALSE(NSProcessInfo::isOperatingSystemAtLeastVersion({2, 9, 9}));
    }
    writer.join();
}

} // namespace
} // namespace zel_tests
