// SPDX-License-Identifier: Apache-2.0
#include "UserDefaultsTestsFolder.h"
#include "tests/support/Sanitized.h"

#include <cstring>

#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/un.h>

namespace zel_tests {
namespace {

using zel::NSUserDefaults;

/// What may stand where the defaults file, or one that belongs to it, is looked for.
struct DefaultsFilePlaces : UserDefaultsFolder {
    [[nodiscard]] std::string lockFile() const { return file() + ".lock"; }
    [[nodiscard]] std::string temporary() const { return file() + ".tmp"; }
};

void makeSocket(const std::string& path) {
    sockaddr_un name{};
    name.sun_family = AF_UNIX;
    ASSERT_LT(path.size(), sizeof name.sun_path);
    std::strncpy(name.sun_path, path.c_str(), sizeof name.sun_path - 1);
    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    EXPECT_EQ(::bind(descriptor, reinterpret_cast<const sockaddr*>(&name), sizeof name), 0);
    ::close(descriptor);
}

TEST_F(DefaultsFilePlaces, ASocketInTheFilesPlaceStays) {
    makeFolder();
    makeSocket(file());
    EXPECT_TRUE(isNeitherReadNorWritten());
    EXPECT_TRUE(std::filesystem::is_socket(file()));
}

TEST_F(DefaultsFilePlaces, LinksToWhatIsNoFileStayAndSoDoesWhatTheyLeadTo) {
    const std::string target = folder + "/target";
    for (const char* const kind : {"folder", "pipe", "ring"}) {
        makeFolder();
        if (std::string(kind) == "folder") {
            std::filesystem::create_directory(target);
        } else if (std::string(kind) == "pipe") {
            ASSERT_EQ(::mkfifo(target.c_str(), 0600), 0);
        } else {
            std::filesystem::create_symlink("Painter/defaults.conf", target);
        }
        const auto type = std::filesystem::symlink_status(target).type();
        std::filesystem::create_symlink(target, file());
        EXPECT_TRUE(isNeitherReadNorWritten()) << kind;
        EXPECT_TRUE(std::filesystem::is_symlink(file())) << kind;
        EXPECT_EQ(std::filesystem::symlink_status(target).type(), type) << kind;
        std::filesystem::remove_all(folder + "/Painter");
        std::filesystem::remove_all(target);
    }
}

TEST_F(DefaultsFilePlaces, AFolderThatMayNotBeEnteredKeepsItsFile) {
    write("k = \"old\"\n");
    ASSERT_EQ(::chmod(folder.c_str(), 0755), 0);
    ASSERT_EQ(::chmod((folder + "/Painter").c_str(), 0000), 0);
    const int result =
        inChild([] { return becomeOrdinaryUser() && isNeitherReadNorWritten() ? 42 : 1; });
    EXPECT_EQ(result, 42);
    ASSERT_EQ(::chmod((folder + "/Painter").c_str(), 0700), 0);
    EXPECT_EQ(text(), "k = \"old\"\n");
}

TEST_F(DefaultsFilePlaces, AFolderThatMayNotBeWrittenStaysEmpty) {
    makeFolder();
    ASSERT_EQ(::chmod(folder.c_str(), 0755), 0);
    ASSERT_EQ(::chmod((folder + "/Painter").c_str(), 0555), 0);
    const int result =
        inChild([] { return becomeOrdinaryUser() && isNeitherReadNorWritten() ? 42 : 1; });
    EXPECT_EQ(result, 42);
    EXPECT_TRUE(names().empty());
}

TEST_F(DefaultsFilePlaces, AFileOfAGigabyteCostsNeitherTimeNorMemory) {
    write("k = \"old\"\n");
    std::filesystem::resize_file(file(), std::uintmax_t{1} << 30); // with nothing behind it
    const int result = inChild([] {
        rusage before{};
        rusage after{};
        ::getrusage(RUSAGE_SELF, &before);
        bool left = true;
        for (int round = 0; round < 100; ++round) {
            left = isNeitherReadNorWritten() && left;
        }
        ::getrusage(RUSAGE_SELF, &after);
        const bool small = after.ru_maxrss - before.ru_maxrss < 16 * 1024; // kilobytes
        // Reading it once takes a good part of a second.
        const auto spent = after.ru_utime.tv_sec + after.ru_stime.tv_sec - before.ru_utime.tv_sec -
                           before.ru_stime.tv_sec;
        return left && small && spent < 5 ? 42 : 1;
    });
    EXPECT_EQ(result, 42);
    EXPECT_EQ(std::filesystem::file_size(file()), std::uintmax_t{1} << 30);
}

TEST_F(DefaultsFilePlaces, WhatIsNoLockFileInItsPlaceStaysAndNothingIsWritten) {
    for (const char* const kind : {"folder", "pipe", "socket", "link"}) {
        write("k = \"old\"\n");
        if (std::string(kind) == "folder") {
            std::filesystem::create_directory(lockFile());
        } else if (std::string(kind) == "pipe") {
            ASSERT_EQ(::mkfifo(lockFile().c_str(), 0600), 0);
        } else if (std::string(kind) == "socket") {
            makeSocket(lockFile());
        } else {
            std::filesystem::create_symlink(folder + "/elsewhere", lockFile());
        }
        const auto type = std::filesystem::symlink_status(lockFile()).type();
        EXPECT_TRUE(fileRefuses("new", "k")) << kind;
        EXPECT_EQ(text(), "k = \"old\"\n") << kind;
        EXPECT_EQ(std::filesystem::symlink_status(lockFile()).type(), type) << kind;
        EXPECT_FALSE(std::filesystem::exists(folder + "/elsewhere"));
        std::filesystem::remove(lockFile());
    }
}

TEST_F(DefaultsFilePlaces, AFileOfAUsersThatRootHasWrittenIsTheUsersToWrite) {
    write("k = \"old\"\n");
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root writes other people's files";
    }
    ASSERT_EQ(::chmod(folder.c_str(), 0755), 0);
    ASSERT_EQ(::chown((folder + "/Painter").c_str(), 65534, 65534), 0);
    ASSERT_EQ(::chown(file().c_str(), 65534, 65534), 0);
    EXPECT_TRUE(NSUserDefaults().setObject("root's", "k"));
    const int result = inChild(
        [] { return becomeOrdinaryUser() && NSUserDefaults().setObject("user's", "k") ? 42 : 1; });
    EXPECT_EQ(result, 42);
    EXPECT_EQ(text(), "k = \"user's\"\n");
}

TEST_F(DefaultsFilePlaces, WhatStandsWhereANewTextIsPreparedIsNotWrittenThrough) {
    write("k = \"old\"\n");
    const std::string other = folder + "/other";
    std::ofstream(other) << "somebody else's";
    std::filesystem::create_symlink(other, temporary());
    EXPECT_TRUE(NSUserDefaults().setObject("first", "k"));
    ASSERT_EQ(::mkfifo(temporary().c_str(), 0600), 0);
    EXPECT_TRUE(NSUserDefaults().setObject("second", "k"));
    EXPECT_EQ(text(), "k = \"second\"\n");
    EXPECT_EQ(std::filesystem::file_size(other), 15u);
    std::filesystem::create_directory(temporary());
    EXPECT_TRUE(fileRefuses("third", "k"));
    EXPECT_EQ(text(), "k = \"second\"\n");
    EXPECT_TRUE(std::filesystem::is_directory(temporary()));
}

TEST_F(DefaultsFilePlaces, OddBytesInNamesOfFoldersAndKeysAreNamesLikeOthers) {
    const std::string keys[] = {"",      "\n",  std::string("nul\0key", 7), "\xFF\xFE", "a = \"b\"",
                                "Größe", "#no", std::string(5000, 'k')};
    for (const char* const name : {"/line\nbreak", "/\xFF\xC3", "/ \"'\\%*$", "/a//b/../c/."}) {
        ::setenv("XDG_CONFIG_HOME", (folder + name).c_str(), 1);
        std::filesystem::create_directories(folder + name + "/Painter/../..");
        for (const std::string& key : keys) {
            EXPECT_TRUE(NSUserDefaults().setObject("of " + key, key)) << name;
        }
        for (const std::string& key : keys) {
            EXPECT_EQ(storedString(key), "of " + key) << name;
        }
    }
}

TEST_F(DefaultsFilePlaces, APathThatIsTooLongHoldsNothing) {
    std::string path = folder;
    while (path.size() < 5000) {
        path += "/folder";
    }
    ::setenv("XDG_CONFIG_HOME", path.c_str(), 1);
    EXPECT_TRUE(isNeitherReadNorWritten());
    EXPECT_FALSE(std::filesystem::exists(folder + "/folder"));
}

TEST_F(DefaultsFilePlaces, AUserWithoutAHomeHasNoFile) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root may become a user without an account";
    }
    ASSERT_EQ(::chmod(folder.c_str(), 0777), 0);
    const int result = inChild([this] {
        ::unsetenv("XDG_CONFIG_HOME");
        ::unsetenv("HOME");
        std::filesystem::current_path(folder);
        constexpr uid_t nobodyAtAll = 4'000'000'001;
        return ::seteuid(nobodyAtAll) == 0 && isNeitherReadNorWritten() ? 42 : 1;
    });
    EXPECT_EQ(result, 42);
    EXPECT_TRUE(std::filesystem::is_empty(folder));
}

TEST_F(DefaultsFilePlaces, WithoutAFreeDescriptorTheFileStaysAndIsReadLater) {
    if (zeltest::kSanitized) {
        GTEST_SKIP() << "the sanitizer needs descriptors, to look at memory";
    }
    write("k = \"old\"\n");
    const int result = inChild([] {
        NSUserDefaults defaults;
        bool refused = false;
        {
            const LowLimit descriptors(RLIMIT_NOFILE, 0);
            refused = !!isRefused(defaults, "new", "other");
        }
        return refused && stringIn(defaults, "k") == "old" &&
                       NSUserDefaults().setObject("new", "other")
                   ? 42
                   : 1;
    });
    EXPECT_EQ(result, 42);
    EXPECT_EQ(text(), "k = \"old\"\nother = \"new\"\n");
}

/// Mounts a disk of a few kilobytes, which only this process sees. False where that is forbidden.
bool mountSmallDisk(const std::string& where, const char* size) {
    const int ownView = ::geteuid() == 0 ? CLONE_NEWNS : CLONE_NEWNS | CLONE_NEWUSER;
    return ::unshare(ownView) == 0 && ::mount("", "/", "", MS_REC | MS_PRIVATE, nullptr) == 0 &&
           ::mount("disk", where.c_str(), "tmpfs", 0, size) == 0;
}

void fillDisk(const std::string& path) {
    std::ofstream stream(path);
    while (stream << 'x' << std::flush) {
    }
}

constexpr int kForbidden = 77;

TEST_F(DefaultsFilePlaces, AFullDiskLosesNothingAndIsWrittenOnceThereIsRoom) {
    makeFolder();
    const int result = inChild([this] {
        const std::string disk = folder + "/Painter";
        if (!mountSmallDisk(disk, "size=64k")) {
            return kForbidden;
        }
        NSUserDefaults defaults;
        const bool first = defaults.setObject("old", "k");
        fillDisk(disk + "/filler");
        const bool refused = isRefused(defaults, std::string(6000, 'n'), "k") &&
                             storedString("k") == "old" && text() == "k = \"old\"\n" &&
                             !std::filesystem::exists(temporary());
        std::filesystem::remove(disk + "/filler");
        return first && refused && defaults.setObject("new", "k") && storedString("k") == "new" ? 42
                                                                                                : 1;
    });
    if (result == kForbidden) {
        GTEST_SKIP() << "no disk may be mounted here";
    }
    EXPECT_EQ(result, 42);
}

TEST_F(DefaultsFilePlaces, ADiskThatTakesNoMoreFilesIsReadAndLeftAlone) {
    makeFolder();
    const int result = inChild([this] {
        const std::string disk = folder + "/Painter";
        if (!mountSmallDisk(disk, "nr_inodes=2")) { // one of them is the folder
            return kForbidden;
        }
        std::ofstream(file()) << "k = \"old\"\n";
        return storedString("k") == "old" && fileRefuses("new", "k") && text() == "k = \"old\"\n" &&
                       names().size() == 1
                   ? 42
                   : 1;
    });
    if (result == kForbidden) {
        GTEST_SKIP() << "no disk may be mounted here";
    }
    EXPECT_EQ(result, 42);
}

} // namespace
} // namespace zel_tests
