// SPDX-License-Identifier: Apache-2.0
#include "UserDefaultsTestsFolder.h"
#include "tests/platform/SystemCalls.h"

#include <cerrno>
#include <vector>

namespace zel_tests {
namespace {

using zel::NSUserDefaults;

/// One call of fsync: for which path, and what the defaults file held at that moment.
struct Sync {
    std::string path;
    std::string text;
    friend bool operator==(const Sync&, const Sync&) = default;
};

struct DefaultsFileDurability : UserDefaultsFolder {
    std::vector<Sync> syncs;
    std::string failingPath; ///< fsync fails for this one
    int error = EIO;
    const Intervention onSync{SystemCall::Fsync, [this](int descriptor) {
                                  const std::string path = pathOf(descriptor);
                                  syncs.push_back({path, text().value_or("")});
                                  return path == failingPath ? error : 0;
                              }};
};

TEST_F(DefaultsFileDurability, ANewTextIsOnDiskBeforeItTakesTheOldOnesPlaceAndThenItsNameIs) {
    write("k = 1\n");
    EXPECT_TRUE(NSUserDefaults().setObject("new", "k"));
    const std::vector<Sync> expected = {{file() + ".tmp", "k = 1\n"},
                                        {folder + "/Painter", "k = \"new\"\n"}};
    EXPECT_EQ(syncs, expected);
}

TEST_F(DefaultsFileDurability, ANewFoldersNameIsOnDiskToo) {
    EXPECT_TRUE(NSUserDefaults().setObject("new", "k"));
    const std::vector<Sync> expected = {
        {folder, ""}, {file() + ".tmp", ""}, {folder + "/Painter", "k = \"new\"\n"}};
    EXPECT_EQ(syncs, expected);
}

TEST_F(DefaultsFileDurability, AnEntryThatIsSoAlreadyIsMadeDurableWithoutBeingWritten) {
    write("k = \"so\"\n");
    EXPECT_TRUE(NSUserDefaults().setObject("so", "k"));
    const std::vector<Sync> expected = {{file(), "k = \"so\"\n"},
                                        {folder + "/Painter", "k = \"so\"\n"}};
    EXPECT_EQ(syncs, expected);
    EXPECT_EQ(names(), std::vector<std::string>{"defaults.conf"});
}

TEST_F(DefaultsFileDurability, AFailingDiskLeavesTheOldFileAndNothingElse) {
    write("k = \"old\"\n");
    failingPath = file() + ".tmp";
    EXPECT_TRUE(fileRefuses("new", "k"));
    EXPECT_EQ(text(), "k = \"old\"\n");
    EXPECT_FALSE(std::filesystem::exists(file() + ".tmp"));
}

TEST_F(DefaultsFileDurability, IsNotClaimedWhereTheNameMayBeLost) {
    write("k = \"old\"\n");
    failingPath = folder + "/Painter";
    EXPECT_TRUE(fileRefuses("new", "k"));
    EXPECT_TRUE(fileRefuses("new", "k"));
}

TEST_F(DefaultsFileDurability, IsNotClaimedOfAnEntryThatIsSoAlreadyOnAFailingDisk) {
    write("k = \"so\"\n");
    failingPath = file();
    EXPECT_TRUE(fileRefuses("so", "k"));
}

TEST_F(DefaultsFileDurability, NeedsNoMoreWhereAFileSystemKnowsNoUnwrittenFolders) {
    write("k = \"old\"\n");
    failingPath = folder + "/Painter";
    for (const int each : {EINVAL, ENOTSUP}) {
        error = each;
        EXPECT_TRUE(NSUserDefaults().setObject("after " + std::to_string(each), "k"));
    }
}

} // namespace
} // namespace zel_tests
