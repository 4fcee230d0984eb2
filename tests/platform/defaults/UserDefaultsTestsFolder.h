// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/NSProcessInfo.h>

#include "UserDefaultsTestsAnswers.h"
#include "tests/support/Counts.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <grp.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zel_tests {

/// Gives each test a configuration folder of its own, and the process the name "Painter".
class UserDefaultsFolder : public ::testing::Test {
protected:
    void SetUp() override {
        std::string pattern = ::testing::TempDir() + "defaults-XXXXXX";
        ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
        folder = pattern;
        ::setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
        zel::NSProcessInfo::setProcessName("Painter");
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    [[nodiscard]] std::string file() const { return folder + "/Painter/defaults.conf"; }

    /// The file's bytes; none where there is no file.
    [[nodiscard]] std::optional<std::string> text() const {
        std::ifstream stream(file(), std::ios::binary);
        if (!stream) {
            return std::nullopt;
        }
        return std::string(std::istreambuf_iterator<char>(stream), {});
    }

    void makeFolder() const { std::filesystem::create_directory(folder + "/Painter"); }

    void write(std::string_view bytes) const {
        makeFolder();
        std::ofstream stream(file(), std::ios::binary | std::ios::trunc);
        stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        ASSERT_TRUE(stream.flush());
    }

    /// The names of what stands in the application's folder, in no order.
    [[nodiscard]] std::vector<std::string> names() const {
        std::vector<std::string> result;
        for (const auto& entry : std::filesystem::directory_iterator(folder + "/Painter")) {
            result.push_back(entry.path().filename().string());
        }
        return result;
    }

    std::string folder;
};

/// Permission bits of a file, links followed.
inline unsigned modeOf(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 0777u : ~0u;
}

/// The path that an open file has in Linux's eyes.
inline std::string pathOf(int descriptor) {
    return std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(descriptor)).string();
}

/// Runs the body in a process of its own and answers its result; -1 where it crashed.
inline int inChild(const std::function<int()>& body) {
    const pid_t child = ::fork();
    if (child == 0) {
        const uid_t user = ::getuid();
        const int result = body();
        // The counts are this user's to write. Refused where the body has gone to a world of its
        // own.
        [[maybe_unused]] const int refused = ::seteuid(user);
        zeltest::endAtOnce(result);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

/// Lowers a limit of this process's while it lives.
class LowLimit {
public:
    LowLimit(decltype(RLIMIT_AS) resource, rlim_t limit) : resource_(resource) {
        ::getrlimit(resource_, &before_);
        const rlimit low{limit, before_.rlim_max};
        EXPECT_EQ(::setrlimit(resource_, &low), 0);
    }
    ~LowLimit() { ::setrlimit(resource_, &before_); }
    LowLimit(const LowLimit&) = delete;
    LowLimit& operator=(const LowLimit&) = delete;

private:
    decltype(RLIMIT_AS) resource_;
    rlimit before_{};
};

/// Lays down the privileges of a test that runs as root, to which nothing is forbidden.
inline bool becomeOrdinaryUser() {
    constexpr unsigned nobody = 65534;
    return ::geteuid() != 0 ||
           (::setgroups(0, nullptr) == 0 && ::setegid(nobody) == 0 && ::seteuid(nobody) == 0);
}

} // namespace zel_tests
