// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/NSProcessInfo.h>
#include <ZelStyleKit/NSUserDefaults.h>

#include "tests/support/Counts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <iterator>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include <grp.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zel_tests {

using Clock = std::chrono::steady_clock;

/// How long a writer waits for another process. Nobody waits for anything else but the disk, so
/// that nothing takes as long, on any machine that is fit for use.
constexpr std::chrono::seconds waitForAnother{2};

constexpr unsigned ordinaryUser = 65534;

/// The string under a key, or why there is none.
inline std::string stringIn(const zel::NSUserDefaults& defaults, std::string_view key) {
    const auto start = Clock::now();
    const auto value = defaults.objectForKey(key);
    if (Clock::now() - start >= waitForAnother) {
        return "(late)";
    }
    if (!value) {
        return "(none)";
    }
    const auto* text = std::get_if<std::string>(&*value);
    return text == nullptr ? "(a number)" : *text;
}

/// The same, by nobody who holds anything in memory.
inline std::string storedString(std::string_view key) {
    return stringIn(zel::NSUserDefaults(), key);
}

/// Whether the file doesn't take a string, which then holds in memory, and nobody has waited.
inline bool isRefused(zel::NSUserDefaults& defaults, const std::string& value) {
    const auto start = Clock::now();
    const bool taken = defaults.setObject(value, "k");
    return !taken && Clock::now() - start < waitForAnother && stringIn(defaults, "k") == value;
}

inline bool fileRefuses(const std::string& value) {
    zel::NSUserDefaults defaults;
    return isRefused(defaults, value);
}

/// Permission bits of a file, links followed.
inline unsigned modeOf(const std::string& path) {
    return static_cast<unsigned>(std::filesystem::status(path).permissions());
}

/// The path that an open file has in Linux's eyes.
inline std::string pathOf(int descriptor) {
    return std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(descriptor)).string();
}

/// Whether the body holds in a process of its own, which is killed where it waits for long.
inline bool holdsInChild(const std::function<bool()>& body) {
    const pid_t child = ::fork();
    if (child == 0) {
        ::alarm(60);
        const uid_t user = ::getuid();
        bool holds = false;
        try {
            holds = body();
        } catch (const std::exception& failure) {
            std::cerr << failure.what() << '\n';
        }
        [[maybe_unused]] const int refused = ::seteuid(user); // whose the counts are to write
        zeltest::endAtOnce(holds ? 42 : 1);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 42;
}

/// Gives each test a configuration folder of its own, and the process the name "Painter".
class DefaultsFolder : public ::testing::Test {
protected:
    void SetUp() override {
        std::string pattern = ::testing::TempDir() + "defaults-XXXXXX";
        ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
        folder = pattern;
        ::setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
        zel::NSProcessInfo::setProcessName("Painter");
    }
    void TearDown() override {
        ::chmod((folder + "/Painter").c_str(), 0700);
        ::chmod(folder.c_str(), 0700);
        std::filesystem::remove_all(folder);
    }

public:
    [[nodiscard]] std::string file() const { return folder + "/Painter/defaults.conf"; }
    [[nodiscard]] std::string lockFile() const { return file() + ".lock"; }
    [[nodiscard]] std::string temporary() const { return file() + ".tmp"; }

    [[nodiscard]] std::string text() const {
        std::ifstream stream(file(), std::ios::binary);
        return stream ? std::string(std::istreambuf_iterator<char>(stream), {}) : "(no file)";
    }

    void makeFolder() const { std::filesystem::create_directory(folder + "/Painter"); }

    void write(std::string_view bytes) const {
        makeFolder();
        std::ofstream(file(), std::ios::binary) << bytes;
    }

    /// Everything in the configuration folder: names and types, and the sizes of files.
    [[nodiscard]] std::vector<std::string> everything() const {
        std::vector<std::string> result;
        constexpr auto whatMayBeSeen = std::filesystem::directory_options::skip_permission_denied;
        for (const auto& each :
             std::filesystem::recursive_directory_iterator(folder, whatMayBeSeen)) {
            const auto type = each.symlink_status().type();
            const bool isFile = type == std::filesystem::file_type::regular;
            result.push_back(each.path().string() + ' ' + std::to_string(static_cast<int>(type)) +
                             ' ' + std::to_string(isFile ? each.file_size() : 0));
        }
        std::sort(result.begin(), result.end());
        return result;
    }

    /// Whether the body holds for an ordinary user whose the folder and all in it is: nothing is
    /// forbidden to root.
    [[nodiscard]] bool holdsForOrdinaryUser(const std::function<bool()>& body) const {
        if (::geteuid() != 0) {
            return holdsInChild(body);
        }
        own(folder);
        for (const auto& each : std::filesystem::recursive_directory_iterator(folder)) {
            own(each.path());
        }
        return holdsInChild([&] {
            return ::setgroups(0, nullptr) == 0 && ::setegid(ordinaryUser) == 0 &&
                   ::seteuid(ordinaryUser) == 0 && body();
        });
    }

    std::string folder;

private:
    static void own(const std::string& path) {
        ASSERT_EQ(::lchown(path.c_str(), ordinaryUser, ordinaryUser), 0);
    }
};

} // namespace zel_tests
