// SPDX-License-Identifier: Apache-2.0
#include "UserDefaultsTestsFolder.h"

#include "tests/support/Sanitized.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>

#include <fcntl.h>
#include <sys/file.h>

namespace zel_tests {
namespace {

using zel::NSNumber;
using zel::NSUserDefaults;
using zel::NSUserDefaultsValue;

struct DefaultsFileTrouble : UserDefaultsFolder {
    /// Lets an ordinary user reach the application's folder.
    void open(unsigned mode) const {
        ASSERT_EQ(::chmod(folder.c_str(), 0755), 0);
        ASSERT_EQ(::chmod((folder + "/Painter").c_str(), static_cast<mode_t>(mode)), 0);
    }
};

TEST_F(DefaultsFileTrouble, AMissingFileIsCreatedForTheUserAlone) {
    ::umask(0);
    EXPECT_EQ(storedString("k"), "(none)");
    EXPECT_TRUE(NSUserDefaults().setObject("new", "k"));
    EXPECT_EQ(modeOf(folder + "/Painter"), 0700u);
    EXPECT_EQ(modeOf(file()), 0600u);
    EXPECT_EQ(modeOf(file() + ".lock"), 0600u);
}

TEST_F(DefaultsFileTrouble, AnEmptyFileIsFilled) {
    write("");
    EXPECT_EQ(storedString("k"), "(none)");
    EXPECT_TRUE(NSUserDefaults().setObject("new", "k"));
    EXPECT_EQ(text(), "k = \"new\"\n");
}

TEST_F(DefaultsFileTrouble, AFileKeepsItsMode) {
    write("k = 1\n");
    for (const unsigned mode : {0644u, 0640u, 0600u}) {
        ASSERT_EQ(::chmod(file().c_str(), static_cast<mode_t>(mode)), 0);
        EXPECT_TRUE(NSUserDefaults().setObject(NSNumber::numberWithLong(mode), "k"));
        EXPECT_EQ(modeOf(file()), mode);
    }
}

TEST_F(DefaultsFileTrouble, AFileThatRootWritesKeepsItsOwner) {
    write("k = 1\n");
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root may give files away";
    }
    ASSERT_EQ(::chown(file().c_str(), 65534, 65534), 0);
    EXPECT_TRUE(NSUserDefaults().setObject("new", "k"));
    struct stat status {};
    ASSERT_EQ(::stat(file().c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, 65534u);
    EXPECT_EQ(status.st_gid, 65534u);
}

TEST_F(DefaultsFileTrouble, AFolderInTheFilesPlaceStays) {
    std::filesystem::create_directories(file());
    EXPECT_TRUE(isNeitherReadNorWritten());
    EXPECT_TRUE(std::filesystem::is_directory(file()));
}

TEST_F(DefaultsFileTrouble, AFileInTheFoldersPlaceStays) {
    std::ofstream(folder + "/Painter") << "k = \"no\"\n";
    EXPECT_TRUE(isNeitherReadNorWritten());
    EXPECT_EQ(std::filesystem::file_size(folder + "/Painter"), 9u);
}

TEST_F(DefaultsFileTrouble, APipeIsNotWaitedFor) {
    makeFolder();
    ASSERT_EQ(::mkfifo(file().c_str(), 0600), 0);
    EXPECT_TRUE(isNeitherReadNorWritten());
    EXPECT_TRUE(std::filesystem::is_fifo(file()));
}

TEST_F(DefaultsFileTrouble, AnEndlessDeviceIsNotRead) {
    makeFolder();
    open(0777);
    std::filesystem::create_symlink("/dev/zero", file());
    // Never as root: code that fails this test could replace the device itself.
    const int result =
        inChild([] { return becomeOrdinaryUser() && isNeitherReadNorWritten() ? 42 : 1; });
    EXPECT_EQ(result, 42);
}

TEST_F(DefaultsFileTrouble, AnOversizedFileIsLeftAlone) {
    write("k = \"old\"\n");
    std::filesystem::resize_file(file(), (8u << 20) + 1);
    EXPECT_TRUE(isNeitherReadNorWritten());
    EXPECT_EQ(std::filesystem::file_size(file()), (8u << 20) + 1);
}

TEST_F(DefaultsFileTrouble, AFileIsNeverMadeOversized) {
    constexpr std::size_t entry = 8; // bytes of the line that is added
    const std::string comment = std::string((8u << 20) - entry, '#') + '\n';
    write(comment);
    EXPECT_FALSE(NSUserDefaults().setObject("v", "k"));
    EXPECT_EQ(std::filesystem::file_size(file()), comment.size());
    EXPECT_EQ(storedString("k"), "(none)");
    write(comment.substr(1)); // so that it fits exactly
    EXPECT_TRUE(NSUserDefaults().setObject("v", "k"));
    EXPECT_EQ(std::filesystem::file_size(file()), 8u << 20);
    EXPECT_EQ(storedString("k"), "v");
}

TEST_F(DefaultsFileTrouble, GarbageStaysBesideANewEntry) {
    std::string garbage;
    std::uint32_t state = 12345;
    for (int i = 0; i < 200'000; ++i) {
        state = state * 1664525u + 1013904223u;
        garbage += static_cast<char>(state >> 24);
    }
    garbage += "tail";
    write(garbage);
    EXPECT_TRUE(NSUserDefaults().setObject("new", "my-key"));
    EXPECT_EQ(storedString("my-key"), "new");
    EXPECT_TRUE(text().value_or("").starts_with(garbage));
}

TEST_F(DefaultsFileTrouble, AnUnreadableFileIsLeftAloneThoughItCouldBeReplaced) {
    write("k = \"old\"\n");
    open(0777);
    ASSERT_EQ(::chmod(file().c_str(), 0000), 0);
    const int result =
        inChild([] { return becomeOrdinaryUser() && isNeitherReadNorWritten() ? 42 : 1; });
    EXPECT_EQ(result, 42);
    ASSERT_EQ(::chmod(file().c_str(), 0600), 0);
    EXPECT_EQ(text(), "k = \"old\"\n");
}

TEST_F(DefaultsFileTrouble, AReadOnlyFileIsReadAndLeftAloneThoughItCouldBeReplaced) {
    write("k = \"old\"\n");
    open(0777);
    ASSERT_EQ(::chmod(file().c_str(), 0444), 0);
    const int result = inChild([] {
        const bool ordinary = becomeOrdinaryUser();
        const bool seen = storedString("k") == "old";
        return ordinary && seen && fileRefuses("new", "k") ? 42 : 1;
    });
    EXPECT_EQ(result, 42);
    EXPECT_EQ(text(), "k = \"old\"\n");
}

TEST_F(DefaultsFileTrouble, AFileInAReadOnlyFolderIsReadAndStays) {
    write("k = \"old\"\n");
    ASSERT_EQ(::chmod(file().c_str(), 0666), 0);
    open(0555);
    const int result = inChild([] {
        const bool ordinary = becomeOrdinaryUser();
        NSUserDefaults defaults;
        const bool refused = stringIn(defaults, "k") == "old" && isRefused(defaults, "new", "k");
        const bool held = stringIn(defaults, "k") == "new" && storedString("k") == "old";
        // What is so already needs no writing.
        const bool nothingToDo = NSUserDefaults().setObject("old", "k") &&
                                 NSUserDefaults().setObject(std::nullopt, "absent");
        return ordinary && refused && held && nothingToDo ? 42 : 1;
    });
    EXPECT_EQ(result, 42);
    open(0755);
    EXPECT_EQ(text(), "k = \"old\"\n");
    EXPECT_EQ(names(), std::vector<std::string>{"defaults.conf"});
}

TEST_F(DefaultsFileTrouble, AFullDiskLeavesTheOldFileAndNothingElse) {
    write("k = \"old\"\n");
    const int result = inChild([] {
        std::signal(SIGXFSZ, SIG_IGN);
        const LowLimit bytesOfAnyFile(RLIMIT_FSIZE, 2000);
        const bool refused = !!fileRefuses(std::string(5000, 'x'), "k");
        return refused && storedString("k") == "old" ? 42 : 2;
    });
    EXPECT_EQ(result, 42);
    EXPECT_EQ(text(), "k = \"old\"\n");
    EXPECT_FALSE(std::filesystem::exists(file() + ".tmp"));
    EXPECT_TRUE(NSUserDefaults().setObject("new", "k"));
}

/// Takes what the heap still has, but for what a small object needs.
void exhaustMemory() {
    for (std::size_t size = std::size_t{64} << 20; size >= 4096; size /= 2) {
        for (void* volatile block = std::malloc(size); block != nullptr;) {
            block = std::malloc(size);
        }
    }
}

TEST_F(DefaultsFileTrouble, AnExhaustedMemoryIsNotFeltOutside) {
    if (zeltest::kSanitized) {
        GTEST_SKIP() << "the sanitizer needs the memory";
    }
    write("k = \"old\"\n" + std::string(7u << 20, '#'));
    const int result = inChild([] {
        NSUserDefaults& defaults = NSUserDefaults::standardUserDefaults();
        const LowLimit bytesOfMemory(RLIMIT_AS, 1); // of which there are more already
        exhaustMemory();
        const bool absent = !defaults.objectForKey("k").has_value();
        return absent && !defaults.setObject("new", "k") ? 42 : 2;
    });
    EXPECT_EQ(result, 42);
    EXPECT_EQ(storedString("k"), "old");
}

TEST_F(DefaultsFileTrouble, ALinkStaysAndTheFileItLeadsToIsWritten) {
    std::filesystem::create_directories(folder + "/elsewhere");
    std::ofstream(folder + "/elsewhere/real.conf") << "k = \"old\"\n";
    makeFolder();
    std::filesystem::create_symlink("../elsewhere/middle", file());
    std::filesystem::create_symlink(folder + "/elsewhere/real.conf", folder + "/elsewhere/middle");
    EXPECT_EQ(storedString("k"), "old");
    EXPECT_TRUE(NSUserDefaults().setObject("new", "k"));
    EXPECT_EQ(storedString("k"), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(file()));
    EXPECT_TRUE(std::filesystem::is_symlink(folder + "/elsewhere/middle"));
    EXPECT_TRUE(std::filesystem::is_regular_file(folder + "/elsewhere/real.conf"));
    EXPECT_EQ(names(), std::vector<std::string>{"defaults.conf"});
}

TEST_F(DefaultsFileTrouble, ALinkToNothingYetIsFilled) {
    makeFolder();
    std::filesystem::create_symlink(folder + "/later.conf", file());
    EXPECT_EQ(storedString("k"), "(none)");
    EXPECT_TRUE(NSUserDefaults().setObject("new", "k"));
    EXPECT_TRUE(std::filesystem::is_symlink(file()));
    EXPECT_TRUE(std::filesystem::is_regular_file(folder + "/later.conf"));
}

TEST_F(DefaultsFileTrouble, ALinkIntoAMissingFolderMakesNoFolder) {
    makeFolder();
    std::filesystem::create_symlink(folder + "/unplugged/defaults.conf", file());
    EXPECT_TRUE(isNeitherReadNorWritten());
    EXPECT_FALSE(std::filesystem::exists(folder + "/unplugged"));
}

TEST_F(DefaultsFileTrouble, ARingOfLinksEnds) {
    makeFolder();
    std::filesystem::create_symlink("defaults.conf", file());
    EXPECT_TRUE(isNeitherReadNorWritten());
}

TEST_F(DefaultsFileTrouble, ALeftoverOfAKilledWriterIsNoHindrance) {
    write("k = \"old\"\n");
    std::ofstream(file() + ".tmp") << "half a fi";
    EXPECT_TRUE(NSUserDefaults().setObject("new", "k"));
    EXPECT_EQ(text(), "k = \"new\"\n");
    EXPECT_FALSE(std::filesystem::exists(file() + ".tmp"));
}

TEST_F(DefaultsFileTrouble, ALockThatIsNeverLetGoDelaysAWriterOnlyAndNotForever) {
    write("k = \"old\"\n");
    const int lock = ::open((file() + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    ASSERT_EQ(::flock(lock, LOCK_EX), 0);
    EXPECT_EQ(storedString("k"), "old");
    NSUserDefaults defaults;
    const auto start = Clock::now();
    EXPECT_FALSE(defaults.setObject("new", "k"));
    const auto waited = Clock::now() - start;
    EXPECT_GE(waited, kWaitForAnother); // or what another is done with by then would be lost
    EXPECT_LT(waited, 2 * kWaitForAnother);
    EXPECT_EQ(stringIn(defaults, "k"), "new");
    EXPECT_EQ(storedString("k"), "old");
    ASSERT_EQ(::flock(lock, LOCK_UN), 0);
    EXPECT_TRUE(defaults.setObject("newer", "k"));
    EXPECT_EQ(storedString("k"), "newer");
    ::close(lock);
}

} // namespace
} // namespace zel_tests
