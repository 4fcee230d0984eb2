// SPDX-License-Identifier: Apache-2.0
#include "platform/defaults/DefaultsFilePath.h"

#include <ZelStyleKit/NSProcessInfo.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <vector>

#include <pwd.h>
#include <unistd.h>

namespace zel {
inline namespace v1 {
namespace {

/// A variable that holds an absolute path; relative ones are to be ignored.
std::optional<std::string> absolutePathFrom(const char* variable) {
    const char* value = std::getenv(variable);
    if (value == nullptr || value[0] != '/') {
        return std::nullopt;
    }
    return value;
}

std::optional<std::string> homeFromAccounts() {
    std::vector<char> buffer(1024);
    passwd account{};
    passwd* found = nullptr;
    int error = ::getpwuid_r(::geteuid(), &account, buffer.data(), buffer.size(), &found);
    while (error == ERANGE && buffer.size() < (1u << 20)) {
        buffer.resize(buffer.size() * 2);
        error = ::getpwuid_r(::geteuid(), &account, buffer.data(), buffer.size(), &found);
    }
    if (error != 0 || found == nullptr || account.pw_dir == nullptr || account.pw_dir[0] != '/') {
        return std::nullopt;
    }
    return account.pw_dir;
}

std::optional<std::string> configurationFolder() {
    if (auto folder = absolutePathFrom("XDG_CONFIG_HOME")) {
        return folder;
    }
    auto home = absolutePathFrom("HOME");
    if (!home) {
        // Asked once, since accounts may come over a network. Never destroyed: the defaults can be
        // read while the process ends.
        static const std::optional<std::string>& account =
            *std::make_unique<const std::optional<std::string>>(homeFromAccounts()).release();
        home = account;
    }
    if (!home) {
        return std::nullopt;
    }
    return *home + "/.config";
}

bool needsEscape(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 || byte == 0x7F || c == '/' || c == '%';
}

void appendHexadecimal(std::string& to, std::uint64_t number, unsigned digits) {
    for (unsigned i = digits; i-- > 0;) {
        to += "0123456789ABCDEF"[(number >> (4 * i)) & 0xFu];
    }
}

std::uint64_t fingerprintOf(std::string_view text) {
    std::uint64_t hash = 14695981039346656037u; // FNV-1a
    for (const char c : text) {
        hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211u;
    }
    return hash;
}

/// A name made fit for a single folder: distinct names stay distinct, nothing leads out of the
/// parent folder, and the result is never empty nor longer than file systems allow.
std::string folderNameFor(std::string_view name) {
    // File systems take 255 bytes; a longer name is cut and told apart by a fingerprint.
    constexpr std::size_t longest = 255;
    constexpr std::size_t fingerprintDigits = 16;
    const bool dotsOnly = name == "." || name == "..";
    std::string result;
    for (const char c : name) {
        if (dotsOnly || needsEscape(c)) {
            result += '%';
            appendHexadecimal(result, static_cast<unsigned char>(c), 2);
        } else {
            result += c;
        }
    }
    if (result.size() > longest) {
        result.resize(longest - fingerprintDigits - 1);
        result += '%';
        appendHexadecimal(result, fingerprintOf(name), fingerprintDigits);
    }
    // A percent sign of the name's own is escaped, so that a lone one can stand for no name.
    return result.empty() ? "%" : result;
}

} // namespace

std::optional<std::string> defaultsFilePath() {
    auto path = configurationFolder();
    if (path) {
        *path += '/' + folderNameFor(NSProcessInfo::processName()) + "/defaults.conf";
    }
    return path;
}

} // namespace v1
} // namespace zel
