// SPDX-License-Identifier: Apache-2.0
#include "UserDefaultsTestsFolder.h"

#include <pwd.h>
#include <sched.h>
#include <sys/mount.h>

namespace zel_tests {
namespace {

using zel::NSUserDefaults;

constexpr int kForbidden = 77;

/// Where the defaults are for a user whose environment says nothing of a home folder.
struct DefaultsFileAccounts : UserDefaultsFolder {
    /// Runs the body in a process whose user has the account's home folder and a description of so
    /// many letters. Answers kForbidden where no process may have accounts of its own.
    [[nodiscard]] int withAccount(const std::string& home, std::size_t letters,
                                  const std::function<bool()>& body) const {
        return inChild([&] {
            const int ownView = ::geteuid() == 0 ? CLONE_NEWNS : CLONE_NEWNS | CLONE_NEWUSER;
            const std::string accounts = folder + "/accounts";
            if (::unshare(ownView) != 0 ||
                ::mount("", "/", "", MS_REC | MS_PRIVATE, nullptr) != 0) {
                return kForbidden;
            }
            std::ofstream(accounts)
                << "painter:x:" << ::geteuid() << ":0:" << std::string(letters, 'd') << ':' << home
                << ":/bin/sh\n";
            if (::mount(accounts.c_str(), "/etc/passwd", "", MS_BIND, nullptr) != 0) {
                return kForbidden;
            }
            ::unsetenv("XDG_CONFIG_HOME");
            ::unsetenv("HOME");
            std::filesystem::current_path(folder);
            return body() ? 42 : 1;
        });
    }
    /// The value is held in memory alone.
    static bool isNowhere() {
        NSUserDefaults defaults;
        return !defaults.setObject("new", "k") && stringIn(defaults, "k") == "new" &&
               storedString("k") == "(none)";
    }
    [[nodiscard]] bool folderIsOtherwiseEmpty() const {
        std::filesystem::remove(folder + "/accounts");
        return std::filesystem::is_empty(folder);
    }
};

TEST_F(DefaultsFileAccounts, AnAccountThatTakesMuchRoomHasAHomeToo) {
    const int result =
        withAccount(folder, 5000, [] { return NSUserDefaults().setObject("new", "k"); });
    if (result == kForbidden) {
        GTEST_SKIP() << "no accounts may stand in for the system's here";
    }
    EXPECT_EQ(result, 42);
    EXPECT_TRUE(std::filesystem::exists(folder + "/.config/Painter/defaults.conf"));
}

TEST_F(DefaultsFileAccounts, AnAccountThatTakesMoreRoomThanAnyIsNone) {
    const int result = withAccount(folder, std::size_t{2} << 20, isNowhere);
    if (result == kForbidden) {
        GTEST_SKIP() << "no accounts may stand in for the system's here";
    }
    EXPECT_EQ(result, 42);
    EXPECT_TRUE(folderIsOtherwiseEmpty());
}

TEST_F(DefaultsFileAccounts, AHomeThatIsNoAbsolutePathIsNone) {
    for (const char* const home : {"", "relative/home"}) {
        const int result = withAccount(home, 10, isNowhere);
        if (result == kForbidden) {
            GTEST_SKIP() << "no accounts may stand in for the system's here";
        }
        EXPECT_EQ(result, 42) << home;
        EXPECT_TRUE(folderIsOtherwiseEmpty()) << home;
    }
}

TEST_F(DefaultsFileAccounts, TheirHomeFolderHasTheFileWithoutAHomeVariable) {
    const int result = inChild([&] { // what a process was told of its account goes for its children
        const passwd* const account = ::getpwuid(::geteuid());
        if (account == nullptr || account->pw_dir == nullptr || account->pw_dir[0] != '/') {
            return kForbidden;
        }
        const std::string home = account->pw_dir;
        const std::string name = std::filesystem::path(folder).filename().string();
        const std::string own = home + "/.config/" + name;
        zel::NSProcessInfo::setProcessName(name);
        ::unsetenv("XDG_CONFIG_HOME");
        bool isThere = true;
        for (const char* const noHome : {"", "not/absolute"}) {
            ::setenv("HOME", noHome, 1);
            isThere = (NSUserDefaults().setObject("value", "mode")
                           ? std::filesystem::remove(own + "/defaults.conf")
                           : ::access(home.c_str(), W_OK) != 0) &&
                      isThere;
        }
        std::filesystem::remove_all(own);
        return isThere ? 42 : 1;
    });
    if (result == kForbidden) {
        GTEST_SKIP() << "this account has no home folder";
    }
    EXPECT_EQ(result, 42);
}

} // namespace
} // namespace zel_tests
