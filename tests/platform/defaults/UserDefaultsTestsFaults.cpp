// SPDX-License-Identifier: Apache-2.0
#include "UserDefaultsTestsFolder.h"
#include "tests/platform/SystemCalls.h"

#include "platform/defaults/DefaultsFileSystem.h"

#include <cerrno>
#include <utility>

namespace zel_tests {
namespace {

using zel::NSUserDefaults;

Intervention::Ask always(int error) {
    return [error] { return error; };
}

Intervention::Ask once(int error) {
    return [error]() mutable { return std::exchange(error, 0); };
}

/// Fails one call of them all, the first being number 1.
Intervention::Ask onlyNumber(int number, int error) {
    return [=, calls = 0]() mutable { return ++calls == number ? error : 0; };
}

/// What the defaults do where the system refuses what they ask of it.
struct DefaultsFileFaults : UserDefaultsFolder {
    /// Only for the file of a path.
    static Intervention::AskOfDescriptor always(int error, const std::string& path) {
        return [=](int descriptor) { return pathOf(descriptor) == path ? error : 0; };
    }
    [[nodiscard]] std::string lockFile() const { return file() + ".lock"; }
    [[nodiscard]] std::string temporary() const { return file() + ".tmp"; }

    /// Makes links that each lead to the next, from the defaults file to that of a path.
    void linkTo(const std::string& path, int links) const {
        std::string target = path;
        for (int i = links; i > 1; --i) {
            const std::string link = folder + "/link" + std::to_string(i);
            std::filesystem::create_symlink(target, link);
            target = link;
        }
        makeFolder();
        std::filesystem::create_symlink(target, file());
    }
};

TEST_F(DefaultsFileFaults, ACallThatASignalInterruptsIsRepeated) {
    for (const SystemCall call :
         {SystemCall::Open, SystemCall::Read, SystemCall::Fsync, SystemCall::Flock}) {
        write("k = \"old\"\n");
        const Intervention signal(call, once(EINTR));
        EXPECT_TRUE(NSUserDefaults().setObject("new", "k")) << static_cast<int>(call);
        EXPECT_EQ(text(), "k = \"new\"\n") << static_cast<int>(call);
    }
    const Intervention signal(SystemCall::Read, once(EINTR));
    EXPECT_EQ(storedString("k"), "new");
}

TEST_F(DefaultsFileFaults, AFileIsClosedOnceThoughASignalInterruptsIt) {
    write("k = \"old\"\n");
    int closings = 0;
    const Intervention signal(SystemCall::Close, [&](int descriptor) {
        if (pathOf(descriptor) != temporary()) {
            return 0;
        }
        ++closings;
        ::close(descriptor); // which it is, whatever the system says
        return EINTR;
    });
    EXPECT_TRUE(NSUserDefaults().setObject("new", "k"));
    EXPECT_EQ(closings, 1);
    EXPECT_EQ(text(), "k = \"new\"\n");
}

TEST_F(DefaultsFileFaults, AFileThatCannotBeReadOrAskedForItsStateHoldsNothingAndStays) {
    write("k = \"old\"\n");
    for (const SystemCall call : {SystemCall::Open, SystemCall::Fstat, SystemCall::Read}) {
        const Intervention fault(call, zel_tests::always(EIO));
        EXPECT_EQ(storedString("k"), "(none)") << static_cast<int>(call);
        EXPECT_TRUE(fileRefuses("new", "k")) << static_cast<int>(call);
    }
    EXPECT_EQ(text(), "k = \"old\"\n");
    EXPECT_EQ(names(), std::vector<std::string>{"defaults.conf"});
}

TEST_F(DefaultsFileFaults, WhateverCannotBeOpenedTheTextIsWholeAndOnlyADurableOneIsClaimed) {
    struct Expected {
        const char* missing;
        bool claimed;
        const char* text;
    };
    const Expected cases[] = {{"the file", false, "k = \"old\"\n"},
                              {"a lock file of its own making", true, "k = \"new\"\n"},
                              {"the file, once it is locked", false, "k = \"old\"\n"},
                              {"the file of the new text", false, "k = \"old\"\n"},
                              {"the folder, to make the name durable", false, "k = \"new\"\n"},
                              {"nothing", true, "k = \"new\"\n"}};
    for (int i = 0; const Expected& each : cases) {
        write("k = \"old\"\n");
        std::filesystem::remove(lockFile());
        const Intervention fault(SystemCall::Open, onlyNumber(++i, EMFILE));
        EXPECT_EQ(NSUserDefaults().setObject("new", "k"), each.claimed) << each.missing;
        EXPECT_EQ(text(), each.text) << each.missing;
    }
}

TEST_F(DefaultsFileFaults, AnEntryThatIsSoAlreadyIsOnlyClaimedWhereItIsMadeDurable) {
    write("k = \"so\"\n");
    const bool claimed[] = {false, false, false, true}; // the file twice, its folder, nothing
    for (int i = 0; const bool each : claimed) {
        const Intervention fault(SystemCall::Open, onlyNumber(++i, EMFILE));
        EXPECT_EQ(NSUserDefaults().setObject("so", "k"), each) << i;
    }
}

TEST_F(DefaultsFileFaults, AFileThatGrowsWhileItIsReadIsNotTakenForWhole) {
    write("k = \"old\"\n");
    {
        const Intervention growth(SystemCall::Read, [this, done = false]() mutable {
            if (!std::exchange(done, true)) {
                std::ofstream(file(), std::ios::app) << "k = \"new\"\n";
            }
            return 0;
        });
        EXPECT_EQ(storedString("k"), "(none)");
    }
    EXPECT_EQ(storedString("k"), "new");
}

TEST_F(DefaultsFileFaults, APipeThatTakesTheFilesPlaceAtTheLastMomentIsNotRead) {
    write("k = \"old\"\n");
    const Intervention change(SystemCall::Open, [this, done = false]() mutable {
        if (!std::exchange(done, true)) {
            std::filesystem::remove(file());
            EXPECT_EQ(::mkfifo(file().c_str(), 0600), 0);
        }
        return 0;
    });
    EXPECT_EQ(zel::readFile(file()).state, zel::FileState::Unreadable);
    EXPECT_TRUE(std::filesystem::is_fifo(file()));
}

TEST_F(DefaultsFileFaults, ATextThatIsLostAsItsFileIsClosedDoesNotReplaceTheOldOne) {
    write("k = \"old\"\n");
    const Intervention fault(SystemCall::Close, always(EDQUOT, temporary()));
    EXPECT_TRUE(fileRefuses("new", "k"));
    EXPECT_EQ(text(), "k = \"old\"\n");
    EXPECT_FALSE(std::filesystem::exists(temporary()));
}

TEST_F(DefaultsFileFaults, ANewTextWhoseOwnerIsUnknownIsForTheUserAlone) {
    write("k = \"old\"\n");
    ASSERT_EQ(::chmod(file().c_str(), 0644), 0);
    const Intervention fault(SystemCall::Fstat, always(EIO, temporary()));
    EXPECT_TRUE(NSUserDefaults().setObject("new", "k"));
    EXPECT_EQ(text(), "k = \"new\"\n");
    EXPECT_EQ(modeOf(file()), 0600u);
}

TEST_F(DefaultsFileFaults, AFileThatMayNotBeGivenBackToItsOwnerIsNoMoreForOthers) {
    write("k = \"old\"\n");
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root has a file that an ordinary user may not give away";
    }
    ASSERT_EQ(::chmod(folder.c_str(), 0755), 0);
    ASSERT_EQ(::chmod((folder + "/Painter").c_str(), 0777), 0);
    ASSERT_EQ(::chmod(file().c_str(), 0666), 0);
    const int result = inChild(
        [] { return becomeOrdinaryUser() && NSUserDefaults().setObject("new", "k") ? 42 : 1; });
    EXPECT_EQ(result, 42);
    EXPECT_EQ(text(), "k = \"new\"\n");
    EXPECT_EQ(modeOf(file()), 0600u);
}

TEST_F(DefaultsFileFaults, AFileThatRootWritesKeepsItsGroup) {
    write("k = 1\n");
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root may give files to any group";
    }
    ASSERT_EQ(::chown(file().c_str(), 0, 65534), 0);
    ASSERT_EQ(::chmod(file().c_str(), 0640), 0);
    EXPECT_TRUE(NSUserDefaults().setObject("new", "k"));
    struct stat status {};
    ASSERT_EQ(::stat(file().c_str(), &status), 0);
    EXPECT_EQ(status.st_gid, 65534u);
    EXPECT_EQ(modeOf(file()), 0640u);
}

TEST_F(DefaultsFileFaults, AsManyLinksAreFollowedAsTheSystemFollows) {
    std::ofstream(folder + "/real.conf") << "k = \"old\"\n";
    linkTo(folder + "/real.conf", 40);
    EXPECT_EQ(storedString("k"), "old");
    EXPECT_TRUE(NSUserDefaults().setObject("old", "k"));
    EXPECT_TRUE(NSUserDefaults().setObject("new", "k"));
    EXPECT_EQ(storedString("k"), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(file()));
}

TEST_F(DefaultsFileFaults, AFileBehindMoreLinksThanTheSystemFollowsStays) {
    std::ofstream(folder + "/real.conf") << "k = \"old\"\n";
    linkTo(folder + "/real.conf", 41);
    EXPECT_EQ(storedString("k"), "(none)");
    EXPECT_TRUE(fileRefuses("new", "k"));
    EXPECT_EQ(std::filesystem::file_size(folder + "/real.conf"), 10u);
    EXPECT_EQ(zel::followLinks(file()), std::nullopt);
}

TEST_F(DefaultsFileFaults, ALinkThatCannotBeReadIsNotReplaced) {
    std::ofstream(folder + "/real.conf") << "k = \"old\"\n";
    linkTo(folder + "/real.conf", 1);
    const Intervention fault(SystemCall::Readlink, zel_tests::always(EIO));
    EXPECT_EQ(zel::followLinks(file()), std::nullopt);
    EXPECT_EQ(storedString("k"), "old");
    EXPECT_TRUE(fileRefuses("old", "k"));
    EXPECT_TRUE(fileRefuses("new", "k"));
    EXPECT_EQ(text(), "k = \"old\"\n");
    EXPECT_TRUE(std::filesystem::is_symlink(file()));
}

TEST_F(DefaultsFileFaults, AFolderThatAnotherProcessMakesFirstIsUsed) {
    const Intervention race(SystemCall::Mkdir, [this] {
        std::filesystem::create_directory(folder + "/Painter");
        return 0; // so that the system says itself that there is one
    });
    EXPECT_TRUE(NSUserDefaults().setObject("new", "k"));
    EXPECT_EQ(text(), "k = \"new\"\n");
}

TEST_F(DefaultsFileFaults, AFolderThatMayNotBeMadeIsMissed) {
    ASSERT_EQ(::chmod(folder.c_str(), 0555), 0);
    for (const char* const below : {"", "/further/down"}) {
        ::setenv("XDG_CONFIG_HOME", (folder + below).c_str(), 1);
        const int result = inChild([] {
            NSUserDefaults defaults;
            const bool refused = becomeOrdinaryUser() && isRefused(defaults, "new", "k");
            return refused && stringIn(defaults, "k") == "new" ? 42 : 1;
        });
        EXPECT_EQ(result, 42) << below;
    }
    EXPECT_TRUE(std::filesystem::is_empty(folder));
    ASSERT_EQ(::chmod(folder.c_str(), 0755), 0);
}

} // namespace
} // namespace zel_tests
