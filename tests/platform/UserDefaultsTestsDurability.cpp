// SPDX-License-Identifier: Apache-2.0
#include "UserDefaultsTestsFolder.h"

#include <cerrno>
#include <vector>

#include <sys/syscall.h>

namespace zel_tests {
namespace {

/// One call of fsync: for which path, and what the defaults file held at that moment.
struct Sync {
    std::string path;
    std::string text;
    friend bool operator==(const Sync&, const Sync&) = default;
};

struct SyncLog {
    bool recording = false;
    std::string file;        ///< the defaults file
    std::string failingPath; ///< fsync fails for this one
    std::vector<Sync> syncs;
};

SyncLog& syncLog() {
    static SyncLog log;
    return log;
}

std::string bytesOf(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), {});
}

} // namespace
} // namespace zel_tests

// Stands in for the system's in this whole program, and passes on to it.
extern "C" int fsync(int descriptor) {
    zel_tests::SyncLog& log = zel_tests::syncLog();
    if (log.recording) {
        const std::string path =
            std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(descriptor)).string();
        log.syncs.push_back({path, zel_tests::bytesOf(log.file)});
        if (path == log.failingPath) {
            errno = EIO;
            return -1;
        }
    }
    return static_cast<int>(::syscall(SYS_fsync, descriptor));
}

namespace zel_tests {
namespace {

using zel::NSUserDefaults;

struct DefaultsFileDurability : UserDefaultsFolder {
    void SetUp() override {
        UserDefaultsFolder::SetUp();
        syncLog() = {true, file(), "", {}};
    }
    void TearDown() override {
        syncLog() = {};
        UserDefaultsFolder::TearDown();
    }
};

TEST_F(DefaultsFileDurability, ANewTextIsOnDiskBeforeItTakesTheOldOnesPlaceAndThenItsNameIs) {
    write("k = 1\n");
    EXPECT_TRUE(NSUserDefaults().setObject("new", "k"));
    const std::vector<Sync> expected = {{file() + ".tmp", "k = 1\n"},
                                        {folder + "/Painter", "k = \"new\"\n"}};
    EXPECT_EQ(syncLog().syncs, expected);
}

TEST_F(DefaultsFileDurability, ANewFoldersNameIsOnDiskToo) {
    EXPECT_TRUE(NSUserDefaults().setObject("new", "k"));
    const std::vector<Sync> expected = {
        {folder, ""}, {file() + ".tmp", ""}, {folder + "/Painter", "k = \"new\"\n"}};
    EXPECT_EQ(syncLog().syncs, expected);
}

TEST_F(DefaultsFileDurability, AnEntryThatIsSoAlreadyIsMadeDurableWithoutBeingWritten) {
    write("k = \"so\"\n");
    EXPECT_TRUE(NSUserDefaults().setObject("so", "k"));
    const std::vector<Sync> expected = {{file(), "k = \"so\"\n"},
                                        {folder + "/Painter", "k = \"so\"\n"}};
    EXPECT_EQ(syncLog().syncs, expected);
    EXPECT_EQ(names(), std::vector<std::string>{"defaults.conf"});
}

TEST_F(DefaultsFileDurability, AFailingDiskLeavesTheOldFileAndNothingElse) {
    write("k = \"old\"\n");
    syncLog().failingPath = file() + ".tmp";
    EXPECT_FALSE(NSUserDefaults().setObject("new", "k"));
    EXPECT_EQ(text(), "k = \"old\"\n");
    EXPECT_FALSE(std::filesystem::exists(file() + ".tmp"));
}

TEST_F(DefaultsFileDurability, IsNotClaimedWhereTheNameMayBeLost) {
    write("k = \"old\"\n");
    syncLog().failingPath = folder + "/Painter";
    EXPECT_FALSE(NSUserDefaults().setObject("new", "k"));
    EXPECT_FALSE(NSUserDefaults().setObject("new", "k"));
}

} // namespace
} // namespace zel_tests
