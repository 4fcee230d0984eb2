// SPDX-License-Identifier: Apache-2.0
#include "tests/fuzz/DefaultsChecks.h"

#include "platform/defaults/DefaultsText.h"
#include "tests/fuzz/Require.h"

#include <algorithm>
#include <cmath>

namespace zelfuzz {
namespace {

using zel::DefaultsEntries;
using zel::NSNumber;

bool isSameNumber(const NSNumber& a, const NSNumber& b) {
    if (a.kind() != b.kind() || a.kind() != NSNumber::Kind::Double) {
        return a == b;
    }
    const double x = a.doubleValue();
    const double y = b.doubleValue();
    return std::signbit(x) == std::signbit(y) && ((std::isnan(x) && std::isnan(y)) || x == y);
}

bool areSame(const DefaultsEntries& a, const DefaultsEntries& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const auto& x, const auto& y) {
        return x.first == y.first && isSame(x.second, y.second);
    });
}

/// The text's lines with their ends.
std::vector<std::string_view> linesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        lines.push_back(text.substr(0, end == std::string_view::npos ? end : end + 1));
        text.remove_prefix(lines.back().size());
    }
    return lines;
}

/// Whether a line is an entry of the key, wherever it stands.
bool isEntryOf(std::string_view key, std::string_view line) {
    return zel::parseDefaultsText(line).contains(key);
}

void checkRemoval(std::string_view text, std::string_view key, std::string_view after) {
    std::string expected;
    for (const std::string_view line : linesOf(text)) {
        expected += isEntryOf(key, line) ? std::string_view() : line;
    }
    require(after == expected, "a removal takes the key's lines and no other", text);
}

/// One line more at the end, which may have had no end mark.
void checkAddition(std::string_view text, std::string_view key, std::string_view after) {
    require(after.starts_with(text), "an addition leaves what there was", text);
    std::string_view added = after.substr(text.size());
    if (!text.empty() && !text.ends_with('\n')) {
        added.remove_prefix(added.starts_with('\r') ? 2 : 1);
    }
    require(linesOf(added).size() == 1 && isEntryOf(key, added), "an addition is one line", text);
}

void checkReplacement(std::string_view text, std::string_view key, std::string_view after) {
    const auto old = linesOf(text);
    const auto now = linesOf(after);
    require(old.size() == now.size(), "a replacement makes no line", text);
    std::size_t changed = 0;
    for (std::size_t i = 0; i < old.size(); ++i) {
        if (old[i] != now[i]) {
            ++changed;
            require(isEntryOf(key, old[i]) && isEntryOf(key, now[i]),
                    "a replacement touches the key's line alone", text);
        }
    }
    require(changed <= 1, "a replacement changes one line at most", text);
}

} // namespace

bool isSame(const std::optional<zel::NSUserDefaultsValue>& a,
            const std::optional<zel::NSUserDefaultsValue>& b) {
    const NSNumber* const x = a ? std::get_if<NSNumber>(&*a) : nullptr;
    const NSNumber* const y = b ? std::get_if<NSNumber>(&*b) : nullptr;
    return x != nullptr && y != nullptr ? isSameNumber(*x, *y) : a == b;
}

void checkWrite(std::string_view text, const Write& write) {
    DefaultsEntries expected = zel::parseDefaultsText(text);
    const bool wasThere = expected.erase(write.key) > 0;
    if (write.value) {
        expected.emplace(write.key, *write.value);
    }
    const std::string after = zel::editDefaultsText(text, write.key, write.value);
    require(areSame(zel::parseDefaultsText(after), expected),
            "a write changes its key's value and no other", text);
    require(zel::editDefaultsText(after, write.key, write.value) == after,
            "writing the same again changes nothing", text);
    if (!write.value) {
        checkRemoval(text, write.key, after);
    } else if (wasThere) {
        checkReplacement(text, write.key, after);
    } else {
        checkAddition(text, write.key, after);
    }
}

void checkEntries(std::string_view text) {
    constexpr std::size_t most = 4;
    const DefaultsEntries entries = zel::parseDefaultsText(text);
    std::string rebuilt;
    for (const auto& [key, value] : entries) {
        rebuilt = zel::editDefaultsText(rebuilt, key, value);
    }
    require(areSame(zel::parseDefaultsText(rebuilt), entries), "what was read can be written",
            text);
    require(linesOf(rebuilt).size() == entries.size(), "an entry takes one line", text);
    std::size_t count = 0;
    for (auto entry = entries.begin(); entry != entries.end() && count < most; ++entry, ++count) {
        require(zel::editDefaultsText(rebuilt, entry->first, entry->second) == rebuilt,
                "writing what is there changes nothing", text);
        checkWrite(text, {entry->first, "always-dark"});
        checkWrite(text, {entry->first, std::nullopt});
    }
    checkWrite(text, {"style-manager-active-mode", "always-dark"});
}

} // namespace zelfuzz
