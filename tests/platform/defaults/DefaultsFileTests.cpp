// SPDX-License-Identifier: Apache-2.0
// What the file holds after a write, and what happens where it can't be used.
#include "DefaultsFolder.h"
#include "tests/platform/SystemCalls.h"

#include <cerrno>
#include <csignal>
#include <cstring>

#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/un.h>

namespace zel_tests {
namespace {

using zel::NSUserDefaults;

using DefaultsFile = DefaultsFolder;

TEST_F(DefaultsFile, IsCreatedForTheUserAlone) {
    ::umask(0);
    EXPECT_EQ(storedString("k"), "(none)");
    EXPECT_TRUE(NSUserDefaults().setObject("new", "k"));
    EXPECT_EQ(storedString("k"), "new");
    EXPECT_EQ(modeOf(folder + "/Painter"), 0700u);
    EXPECT_EQ(modeOf(file()), 0600u);
    EXPECT_EQ(modeOf(lockFile()), 0600u);
}

TEST_F(DefaultsFile, KeepsItsMode) {
    write("k = 1\n");
    for (const unsigned mode : {0644u, 0640u, 0600u}) {
        ASSERT_EQ(::chmod(file().c_str(), mode), 0);
        EXPECT_TRUE(NSUserDefaults().setObject(std::to_string(mode), "k"));
        EXPECT_EQ(modeOf(file()), mode);
    }
}

TEST_F(DefaultsFile, IsNoMoreForOthersInAnotherGroup) {
    write("k = 1\n");
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root may give files to any group";
    }
    ASSERT_EQ(::chown(file().c_str(), 0, ordinaryUser), 0);
    ASSERT_EQ(::chmod(file().c_str(), 0644), 0);
    EXPECT_TRUE(NSUserDefaults().setObject("new", "k"));
    EXPECT_EQ(modeOf(file()), 0600u);
}

TEST_F(DefaultsFile, OfAnotherUserIsReadAndLeftAlone) {
    write("k = \"old\"\n");
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root may give files away";
    }
    ASSERT_EQ(::chown(file().c_str(), ordinaryUser, ordinaryUser), 0);
    const auto before = everything();
    EXPECT_EQ(storedString("k"), "old");
    EXPECT_TRUE(fileRefuses("of root"));
    EXPECT_EQ(everything(), before);
    std::filesystem::remove(file());
    ASSERT_EQ(::chown((folder + "/Painter").c_str(), ordinaryUser, ordinaryUser), 0);
    EXPECT_TRUE(fileRefuses("of root"));
    EXPECT_TRUE(std::filesystem::is_empty(folder + "/Painter"));
}

TEST_F(DefaultsFile, ThatMayNotBeWrittenIsReadAndLeftAloneThoughItCouldBeReplaced) {
    write("k = \"old\"\n");
    ASSERT_EQ(::chmod(file().c_str(), 0444), 0);
    const auto before = everything();
    EXPECT_EQ(storedString("k"), "old");
    EXPECT_TRUE(fileRefuses("new"));
    EXPECT_EQ(everything(), before);
}

TEST_F(DefaultsFile, InAReadOnlyFolderIsReadAndStays) {
    write("k = \"old\"\n");
    ASSERT_EQ(::chmod((folder + "/Painter").c_str(), 0555), 0);
    const auto before = everything();
    EXPECT_TRUE(holdsForOrdinaryUser([] {
        // What is so already needs no writing.
        return storedString("k") == "old" && fileRefuses("new") && storedString("k") == "old" &&
               NSUserDefaults().setObject("old", "k") &&
               NSUserDefaults().setObject(std::nullopt, "absent");
    }));
    EXPECT_EQ(everything(), before);
}

TEST_F(DefaultsFile, IsNotMadeForTheRemovalOfWhatIsNotThere) {
    EXPECT_TRUE(NSUserDefaults().setObject(std::nullopt, "k"));
    EXPECT_TRUE(std::filesystem::is_empty(folder));
}

TEST_F(DefaultsFile, IsNeverMadeOversized) {
    constexpr std::size_t largest = 8u << 20;
    const std::string comment = std::string(largest - sizeof "k = \"v\"", '#') + '\n';
    write(comment);
    EXPECT_TRUE(fileRefuses("v"));
    EXPECT_EQ(text(), comment);
    write(comment.substr(1)); // so that it fits exactly
    EXPECT_TRUE(NSUserDefaults().setObject("v", "k"));
    EXPECT_EQ(std::filesystem::file_size(file()), largest);
    EXPECT_EQ(storedString("k"), "v");
}

TEST_F(DefaultsFile, StaysWholeOnAFullDisk) {
    write("k = \"old\"\n");
    const auto before = everything();
    EXPECT_TRUE(holdsInChild([] {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit bytesOfAnyFile{2000, RLIM_INFINITY};
        const rlimit all{RLIM_INFINITY, RLIM_INFINITY}; // the counts are longer
        return ::setrlimit(RLIMIT_FSIZE, &bytesOfAnyFile) == 0 &&
               fileRefuses(std::string(5000, 'x')) && storedString("k") == "old" &&
               ::setrlimit(RLIMIT_FSIZE, &all) == 0;
    }));
    std::filesystem::remove(lockFile());
    EXPECT_EQ(everything(), before);
}

TEST_F(DefaultsFile, BehindALinkIsWrittenAndTheLinkStays) {
    makeFolder();
    std::filesystem::create_directory(folder + "/elsewhere");
    std::filesystem::create_symlink("../elsewhere/middle", file());
    std::filesystem::create_symlink(folder + "/elsewhere/real", folder + "/elsewhere/middle");
    std::ofstream(folder + "/elsewhere/real") << "k = \"old\"\n";
    EXPECT_EQ(storedString("k"), "old");
    EXPECT_TRUE(NSUserDefaults().setObject("new", "k"));
    EXPECT_EQ(text(), "k = \"new\"\n");
    EXPECT_TRUE(std::filesystem::is_symlink(file()));
    EXPECT_TRUE(std::filesystem::is_symlink(folder + "/elsewhere/middle"));
    EXPECT_FALSE(std::filesystem::exists(lockFile()));
}

TEST_F(DefaultsFile, BehindALinkToNothingYetIsMade) {
    makeFolder();
    std::filesystem::create_symlink(folder + "/later", file());
    EXPECT_TRUE(NSUserDefaults().setObject("new", "k"));
    EXPECT_EQ(storedString("k"), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(file()));
    EXPECT_TRUE(std::filesystem::is_regular_file(folder + "/later"));
}

TEST_F(DefaultsFile, BehindALinkThatCannotBeReadStays) {
    write("k = \"old\"\n");
    std::filesystem::rename(file(), folder + "/real");
    std::filesystem::create_symlink(folder + "/real", file());
    const Intervention fault(SystemCall::Readlink, [] { return EIO; });
    EXPECT_EQ(storedString("k"), "old");
    EXPECT_TRUE(fileRefuses("new"));
    EXPECT_EQ(text(), "k = \"old\"\n");
    EXPECT_TRUE(std::filesystem::is_symlink(file()));
}

TEST_F(DefaultsFile, IsNotAPipeThatTakesItsPlaceAtTheLastMoment) {
    write("k = \"old\"\n");
    bool isPipe = false;
    const Intervention change(SystemCall::Open, [&] {
        if (!isPipe) {
            std::filesystem::remove(file());
            isPipe = ::mkfifo(file().c_str(), 0600) == 0;
        }
        return 0;
    });
    EXPECT_TRUE(holdsInChild([&] { return storedString("k") == "(none)" && isPipe; }));
}

TEST_F(DefaultsFile, IsNotEvenOpenedWhereItIsAPipe) {
    makeFolder();
    ASSERT_EQ(::mkfifo(file().c_str(), 0600), 0);
    int opened = 0; // which alone would wake who waits at its other end
    const Intervention watch(SystemCall::Open, [&] { return opened++, 0; });
    EXPECT_EQ(storedString("k"), "(none)");
    EXPECT_TRUE(fileRefuses("new"));
    EXPECT_EQ(opened, 0);
}

TEST_F(DefaultsFile, IsReplacedThoughSomethingIsWhereItsNewTextIsPrepared) {
    write("k = \"old\"\n");
    std::ofstream(temporary()) << "half a fi"; // of a killed writer
    EXPECT_TRUE(NSUserDefaults().setObject("first", "k"));
    std::ofstream(folder + "/other") << "somebody else's";
    std::filesystem::create_symlink(folder + "/other", temporary());
    EXPECT_TRUE(NSUserDefaults().setObject("second", "k"));
    EXPECT_EQ(std::filesystem::file_size(folder + "/other"), 15u);
    ASSERT_EQ(::mkfifo(temporary().c_str(), 0600), 0);
    EXPECT_TRUE(holdsInChild([] { return NSUserDefaults().setObject("third", "k"); }));
    std::filesystem::create_directory(temporary());
    EXPECT_TRUE(fileRefuses("fourth"));
    EXPECT_EQ(text(), "k = \"third\"\n");
}

// What may be at the place of the file, of its folder or of its lock.

void makeSocket(const std::string& path) {
    sockaddr_un name{};
    name.sun_family = AF_UNIX;
    std::strncpy(name.sun_path, path.c_str(), sizeof name.sun_path - 1);
    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    EXPECT_EQ(::bind(descriptor, reinterpret_cast<const sockaddr*>(&name), sizeof name), 0);
    ::close(descriptor);
}

struct Obstacle {
    const char* name;
    void (*make)(const DefaultsFolder& in);
    friend void PrintTo(const Obstacle& each, std::ostream* to) { *to << each.name; }
};

const Obstacle obstacles[] = {
    {"AFolder", [](auto& in) { std::filesystem::create_directory(in.file()); }},
    {"APipe", [](auto& in) { ::mkfifo(in.file().c_str(), 0600); }},
    {"ASocket", [](auto& in) { makeSocket(in.file()); }},
    {"AnEndlessDevice", [](auto& in) { std::filesystem::create_symlink("/dev/zero", in.file()); }},
    {"ALinkToAFolder", [](auto& in) { std::filesystem::create_symlink(in.folder, in.file()); }},
    {"ALinkToAPipe",
     [](auto& in) {
         ::mkfifo((in.folder + "/pipe").c_str(), 0600);
         std::filesystem::create_symlink("../pipe", in.file());
     }},
    {"ARingOfLinks", [](auto& in) { std::filesystem::create_symlink("defaults.conf", in.file()); }},
    {"ALinkIntoAMissingFolder",
     [](auto& in) { std::filesystem::create_symlink("unplugged/defaults.conf", in.file()); }},
    {"ALinkToALinkToNothing",
     [](auto& in) {
         std::filesystem::create_symlink("middle", in.file());
         std::filesystem::create_symlink("nothing", in.folder + "/Painter/middle");
     }},
    {"AFileOfAGigabyte",
     [](auto& in) {
         in.write("k = \"no\"\n");
         std::filesystem::resize_file(in.file(), std::uintmax_t{1} << 30); // nothing behind it
     }},
    {"AFileOfOneByteTooMany",
     [](auto& in) {
         in.write("k = \"no\"\n");
         std::filesystem::resize_file(in.file(), (8u << 20) + 1);
     }},
    {"AnUnreadableFile",
     [](auto& in) {
         in.write("k = \"no\"\n");
         ::chmod(in.file().c_str(), 0000);
     }},
    {"AFolderThatMayNotBeEntered",
     [](auto& in) {
         in.write("k = \"no\"\n");
         ::chmod((in.folder + "/Painter").c_str(), 0000);
     }},
    {"AFolderThatMayNotBeWritten",
     [](auto& in) { ::chmod((in.folder + "/Painter").c_str(), 0500); }},
    {"AFolderThatMayNotBeMade",
     [](auto& in) {
         std::filesystem::remove(in.folder + "/Painter");
         ::chmod(in.folder.c_str(), 0500);
     }},
    {"AFileInTheFoldersPlace",
     [](auto& in) {
         std::filesystem::remove(in.folder + "/Painter");
         std::ofstream(in.folder + "/Painter") << "k = \"no\"\n";
     }},
    {"APathThatIsTooLong",
     [](auto& in) {
         std::string path = in.folder;
         while (path.size() < 5000) {
             path += "/folder";
         }
         ::setenv("XDG_CONFIG_HOME", path.c_str(), 1);
     }},
    {"AFolderAsLock", [](auto& in) { std::filesystem::create_directory(in.lockFile()); }},
    {"APipeAsLock", [](auto& in) { ::mkfifo(in.lockFile().c_str(), 0600); }},
    {"ASocketAsLock", [](auto& in) { makeSocket(in.lockFile()); }},
    {"ALinkAsLock", [](auto& in) { std::filesystem::create_symlink("elsewhere", in.lockFile()); }},
};

class AnObstacle : public DefaultsFolder, public ::testing::WithParamInterface<Obstacle> {};

TEST_P(AnObstacle, IsNeitherReadNorWrittenAndNobodyWaits) {
    makeFolder();
    GetParam().make(*this);
    EXPECT_TRUE(holdsForOrdinaryUser([this] {
        const auto before = everything();
        return storedString("k") == "(none)" && fileRefuses("new") &&
               storedString("k") == "(none)" && everything() == before;
    }));
}

INSTANTIATE_TEST_SUITE_P(DefaultsFile, AnObstacle, ::testing::ValuesIn(obstacles),
                         [](const auto& each) { return std::string(each.param.name); });

// What the system may refuse.

/// One call of them all, the first being number 1, fails.
struct Fault {
    SystemCall call;
    int number;
    int error;
    bool isClaimed;      ///< that the value is durable
    bool isWritten;      ///< into the file, instead of "old"
    const char* meaning; ///< what fails
    friend void PrintTo(const Fault& each, std::ostream* to) { *to << each.meaning; }
};

const Fault faults[] = {
    {SystemCall::Open, 1, EMFILE, false, false, "the file is opened"},
    {SystemCall::Open, 2, EMFILE, false, false, "the lock file is opened"},
    {SystemCall::Open, 3, EMFILE, false, false, "the file is opened, once it is locked"},
    {SystemCall::Open, 4, EMFILE, false, false, "the new text's file is opened"},
    {SystemCall::Open, 5, EMFILE, false, true, "the folder is opened, to make the name durable"},
    {SystemCall::Open, 6, EMFILE, true, true, "nothing"},
    {SystemCall::Fstat, 1, EIO, false, false, "the file's state"},
    {SystemCall::Fstat, 2, EIO, false, false, "the lock file's state"},
    {SystemCall::Read, 1, EIO, false, false, "the file is read"},
    {SystemCall::Write, 1, ENOSPC, false, false, "the new text is written"},
    {SystemCall::Flock, 1, ENOLCK, false, false, "a file system without locks"},
    {SystemCall::Fsync, 1, EIO, false, false, "the new text is made durable"},
    {SystemCall::Fsync, 2, EIO, false, true, "the name is made durable"},
    {SystemCall::Fsync, 2, EINVAL, true, true, "a file system without unwritten folders"},
    {SystemCall::Fsync, 2, ENOTSUP, true, true, "another one"},
    {SystemCall::Open, 1, EINTR, true, true, "a signal while a file is opened"},
    {SystemCall::Read, 1, EINTR, true, true, "a signal while it is read"},
    {SystemCall::Write, 1, EINTR, true, true, "a signal while it is written"},
    {SystemCall::Fsync, 1, EINTR, true, true, "a signal while it is made durable"},
    {SystemCall::Flock, 1, EINTR, true, true, "a signal while it is locked"},
};

class AFault : public DefaultsFolder, public ::testing::WithParamInterface<Fault> {};

TEST_P(AFault, LeavesTheTextWholeAndOnlyADurableOneIsClaimed) {
    const Fault& fault = GetParam();
    write("k = \"old\"\n");
    NSUserDefaults defaults;
    const auto start = Clock::now();
    {
        const Intervention intervention(fault.call, [&fault, calls = 0](int) mutable {
            return ++calls == fault.number ? fault.error : 0;
        });
        EXPECT_EQ(defaults.setObject("new", "k"), fault.isClaimed);
    }
    EXPECT_LT(Clock::now() - start, waitForAnother);
    EXPECT_EQ(text(), fault.isWritten ? "k = \"new\"\n" : "k = \"old\"\n");
    EXPECT_EQ(stringIn(defaults, "k"), "new");
    EXPECT_FALSE(std::filesystem::exists(temporary()));
}

INSTANTIATE_TEST_SUITE_P(DefaultsFile, AFault, ::testing::ValuesIn(faults));

TEST_F(DefaultsFile, ThatCannotBeReadHoldsNothing) {
    write("k = \"old\"\n");
    for (const SystemCall call : {SystemCall::Open, SystemCall::Fstat, SystemCall::Read}) {
        const Intervention fault(call, [] { return EIO; });
        EXPECT_EQ(storedString("k"), "(none)") << static_cast<int>(call);
    }
}

TEST_F(DefaultsFile, IsWrittenInAFolderThatAnotherProcessMakesFirst) {
    const Intervention race(SystemCall::Mkdir, [this] {
        makeFolder();
        return 0; // so that the system says itself that there is one
    });
    EXPECT_TRUE(NSUserDefaults().setObject("new", "k"));
    EXPECT_EQ(text(), "k = \"new\"\n");
}

// What is on disk when.

struct DurableDefaultsFile : DefaultsFolder {
    std::vector<std::string> syncs; ///< which path, and what the file held by then
    std::string failingPath;
    const Intervention onSync{SystemCall::Fsync, [this](int descriptor) {
                                  const std::string path = pathOf(descriptor);
                                  syncs.push_back(path + ": " + text());
                                  return path == failingPath ? EIO : 0;
                              }};
};

TEST_F(DurableDefaultsFile, HasItsTextOnDiskBeforeItsNameAndBothBeforeThatIsClaimed) {
    EXPECT_TRUE(NSUserDefaults().setObject("old", "k"));
    EXPECT_TRUE(NSUserDefaults().setObject("new", "k"));
    const std::vector<std::string> expected = {
        folder + ": (no file)", temporary() + ": (no file)", folder + "/Painter: k = \"old\"\n",
        temporary() + ": k = \"old\"\n", folder + "/Painter: k = \"new\"\n"};
    EXPECT_EQ(syncs, expected);
}

TEST_F(DurableDefaultsFile, IsMadeDurableWithoutBeingWrittenWhereItIsSoAlready) {
    write("k = \"so\"\n");
    const auto before = everything();
    EXPECT_TRUE(NSUserDefaults().setObject("so", "k"));
    const std::vector<std::string> expected = {file() + ": k = \"so\"\n",
                                               folder + "/Painter: k = \"so\"\n"};
    EXPECT_EQ(syncs, expected);
    for (const std::string& each : {file(), folder + "/Painter"}) {
        failingPath = each;
        EXPECT_TRUE(fileRefuses("so")) << each;
    }
    EXPECT_EQ(everything(), before);
}

} // namespace
} // namespace zel_tests
