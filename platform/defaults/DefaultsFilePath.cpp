// SPDX-License-Identifier: Apache-2.0
#include "platform/defaults/DefaultsFile.h"

#include <ZelStyleKit/NSProcessInfo.h>

#include <array>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include <pwd.h>
#include <unistd.h>

namespace zel::inline v1 {
namespace {

/// Relative paths are to be ignored.
std::optional<std::string> absolute(const char* path) {
    return path != nullptr && path[0] == '/' ? std::optional<std::string>(path) : std::nullopt;
}

std::optional<std::string> homeFromAccounts() {
    std::vector<char> buffer(std::size_t{1} << 16); // far more than an account takes
    passwd account{};
    passwd* found = nullptr;
    ::getpwuid_r(::geteuid(), &account, buffer.data(), buffer.size(), &found);
    return found == nullptr ? std::nullopt : absolute(found->pw_dir);
}

std::string escaped(std::uint64_t number, int digits) {
    std::array<char, 20> text{};
    std::snprintf(text.data(), text.size(), "%%%0*" PRIX64, digits, number);
    return text.data();
}

/// A name made fit for a single folder: distinct names stay distinct, nothing leads out of the
/// parent folder, and the result is never empty nor longer than file systems allow.
std::string folderNameFor(std::string_view name) {
    const bool dotsOnly = name == "." || name == "..";
    std::uint64_t fingerprint = 14695981039346656037u; // FNV-1a
    std::string result;
    for (const char c : name) {
        const auto byte = static_cast<unsigned char>(c);
        const bool plain = !dotsOnly && byte >= 0x20 && byte != 0x7F && c != '/' && c != '%';
        result += plain ? std::string(1, c) : escaped(byte, 2);
        fingerprint = (fingerprint ^ byte) * 1099511628211u;
    }
    if (result.size() > 255) {
        result.replace(255 - 17, std::string_view::npos, escaped(fingerprint, 16));
    }
    // A percent sign of the name's own is escaped, so that a lone one can stand for no name.
    return result.empty() ? "%" : result;
}

} // namespace

std::optional<std::filesystem::path> defaultsFilePath() {
    auto folder = absolute(std::getenv("XDG_CONFIG_HOME"));
    if (!folder) {
        const auto home = absolute(std::getenv("HOME"));
        folder = home ? home : homeFromAccounts();
        if (!folder) {
            return std::nullopt;
        }
        *folder += "/.config";
    }
    return *folder + "/" + folderNameFor(NSProcessInfo::processName()) + "/defaults.conf";
}

} // namespace zel::inline v1
