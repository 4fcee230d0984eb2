// SPDX-License-Identifier: Apache-2.0
#include "SessionBusAddress.h"

#include <cstdlib>

namespace zel::inline v1 {
namespace {

// Environment variables are not trusted in a program that runs with more rights than its user.
std::string_view environment(const char* name) {
    const char* const value = ::secure_getenv(name);
    return value != nullptr ? value : "";
}

// Everything that may have a meaning in an address is written as the percent sign and two digits.
std::string escaped(std::string_view value) {
    static constexpr std::string_view plain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                              "0123456789-_/.\\*";
    static constexpr std::string_view digits = "0123456789abcdef";
    std::string result;
    for (const char character : value) {
        if (plain.find(character) != std::string_view::npos) {
            result += character;
        } else {
            const auto byte = static_cast<unsigned char>(character);
            result += '%';
            result += digits[byte >> 4U];
            result += digits[byte & 15U];
        }
    }
    return result;
}

} // namespace

std::string sessionBusAddress() {
    if (const auto address = environment("DBUS_SESSION_BUS_ADDRESS"); !address.empty()) {
        return std::string(address);
    }
    if (const auto folder = environment("XDG_RUNTIME_DIR"); !folder.empty()) {
        return "unix:path=" + escaped(folder) + "/bus";
    }
    return {};
}

std::string addressesThatNeverBlock(std::string_view addresses) {
    std::string result;
    while (!addresses.empty()) {
        const auto entry = addresses.substr(0, addresses.find(';'));
        addresses.remove_prefix(entry.size());
        if (!addresses.empty()) {
            addresses.remove_prefix(1);
        }
        if (entry.substr(0, 5) == "unix:") {
            result += result.empty() ? "" : ";";
            result += entry;
        }
    }
    return result;
}

} // namespace zel::inline v1
