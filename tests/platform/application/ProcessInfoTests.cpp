// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/NSProcessInfo.h>

#include "tests/platform/SystemCalls.h"
#include "tests/support/Counts.h"

#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <thread>

#include <unistd.h>

namespace zel_tests {
namespace {

using zel::NSProcessInfo;

constexpr const char* sayName = "PROCESS_INFO_TESTS_SAY_NAME";

/// A copy of this program that is told to says its name while it starts, before main: of a file
/// that is "deleted" by then, "unknown" to the system, or "standing".
const bool told = [] {
    if (const char* const how = std::getenv(sayName)) {
        if (std::string_view(how) == "deleted") {
            std::error_code ignored;
            std::filesystem::remove(std::filesystem::read_symlink("/proc/self/exe"), ignored);
        }
        std::optional<Intervention> noPath;
        if (std::string_view(how) == "unknown") {
            noPath.emplace(SystemCall::Readlink, [] { return ENOENT; });
        }
        std::fputs(NSProcessInfo::processName().c_str(), stdout);
        std::fflush(stdout);
        zeltest::endAtOnce(0);
    }
    return false;
}();

struct ProgramName : testing::Test {
    void SetUp() override {
        ASSERT_FALSE(told);
        folder = ::testing::TempDir() + "process-XXXXXX";
        ASSERT_NE(::mkdtemp(folder.data()), nullptr);
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    /// What a copy of this program, called by its path, says its name is.
    static std::string nameSaidBy(const std::string& path, const char* how) {
        ::setenv(sayName, how, 1);
        FILE* const output = ::popen(("'" + path + "'").c_str(), "r");
        ::unsetenv(sayName);
        std::string name;
        for (int c = std::fgetc(output); c != EOF; c = std::fgetc(output)) {
            name += static_cast<char>(c);
        }
        ::pclose(output);
        return name;
    }
    static std::string nameOfCopy(const std::string& path, const char* how) {
        std::filesystem::copy_file("/proc/self/exe", path);
        return nameSaidBy(path, how);
    }

    std::string folder;
};

TEST_F(ProgramName, IsThatOfItsFileAlsoBeforeMainAndAfterItsDeletion) {
    EXPECT_EQ(nameOfCopy(folder + "/Sketch Book", "deleted"), "Sketch Book");
    EXPECT_FALSE(std::filesystem::exists(folder + "/Sketch Book"));
}

TEST_F(ProgramName, KeepsAMarkThatIsItsOwn) {
    EXPECT_EQ(nameOfCopy(folder + "/Sketch (deleted)", "standing"), "Sketch (deleted)");
}

TEST_F(ProgramName, IsFoundBehindALongPath) {
    const std::string deep = folder + '/' + std::string(200, 'a') + '/' + std::string(200, 'b');
    std::filesystem::create_directories(deep);
    EXPECT_EQ(nameOfCopy(deep + "/Painter", "standing"), "Painter");
}

TEST_F(ProgramName, IsWhatItWasCalledAsWhereTheSystemDoesNotKnowItsFile) {
    const std::string alias = folder + "/Alias";
    std::filesystem::create_symlink("Painter", alias);
    EXPECT_EQ(nameOfCopy(folder + "/Painter", "unknown"), "Painter");
    EXPECT_EQ(nameSaidBy(alias, "unknown"), "Alias");
    EXPECT_EQ(nameSaidBy(alias, "standing"), "Painter");
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
