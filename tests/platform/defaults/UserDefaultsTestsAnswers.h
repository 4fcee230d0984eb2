// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/NSUserDefaults.h>

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <string_view>
#include <variant>

namespace zel_tests {

using Clock = std::chrono::steady_clock;

/// How long a writer waits for another process. Nobody waits for anything else but the disk, so
/// that nothing takes as long, on any machine that is fit for use.
constexpr std::chrono::seconds kWaitForAnother{2};

/// The string under a key, or what tells that there is none, or that reading was no matter of a
/// moment.
inline std::string stringIn(const zel::NSUserDefaults& defaults, std::string_view key) {
    const auto start = Clock::now();
    const auto value = defaults.objectForKey(key);
    if (Clock::now() - start >= kWaitForAnother) {
        return "(late)";
    }
    if (!value) {
        return "(none)";
    }
    const auto* text = std::get_if<std::string>(&*value);
    return text == nullptr ? "(a number)" : *text;
}

/// The same, by nobody who has read the file before.
inline std::string storedString(std::string_view key) {
    return stringIn(zel::NSUserDefaults(), key);
}

/// Whether the file doesn't take a string, and nobody has waited to hear it.
inline testing::AssertionResult isRefused(zel::NSUserDefaults& defaults, const std::string& value,
                                          std::string_view key) {
    const auto start = Clock::now();
    if (defaults.setObject(value, key)) {
        return testing::AssertionFailure() << key << " is taken";
    }
    if (Clock::now() - start >= kWaitForAnother) {
        return testing::AssertionFailure() << key << " is refused, but late";
    }
    return testing::AssertionSuccess();
}

/// The same, by nobody who has read the file before.
inline testing::AssertionResult fileRefuses(const std::string& value, std::string_view key) {
    zel::NSUserDefaults defaults;
    return isRefused(defaults, value, key);
}

/// Nothing is read, nothing is written, nobody waits; the value is held in memory instead.
inline testing::AssertionResult isNeitherReadNorWritten() {
    zel::NSUserDefaults defaults;
    if (const std::string found = stringIn(defaults, "k"); found != "(none)") {
        return testing::AssertionFailure() << "at first: " << found;
    }
    if (const auto refused = isRefused(defaults, "new", "k"); !refused) {
        return refused;
    }
    if (const std::string held = stringIn(defaults, "k"); held != "new") {
        return testing::AssertionFailure() << "in memory: " << held;
    }
    if (const std::string stored = storedString("k"); stored != "(none)") {
        return testing::AssertionFailure() << "in the file: " << stored;
    }
    return testing::AssertionSuccess();
}

} // namespace zel_tests
