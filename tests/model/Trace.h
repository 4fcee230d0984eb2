// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace zeltest {

/// What an observation begins with.
constexpr std::array<std::string_view, 14> marks = {
    "step",      "nested",   "RAISED", "HANDLER", "OBJECT", "OBSERVER", "CHANGES",
    "INHERITED", "PROVIDER", "HOOK",   "TYPE",    "POSTED", "STATE",    "VALUES"};
constexpr std::int64_t firstMark = 9000;

consteval std::int64_t mark(std::string_view name) {
    const auto found = std::ranges::find(marks, name);
    return found != marks.end() ? firstMark + (found - marks.begin()) : throw "no such mark";
}

/// All that could be observed, as numbers: the same for both sides where they behave the same.
/// Objects that the script has no number for are numbered as they are first seen.
class Trace {
public:
    std::vector<std::int64_t> entries;

    void put(std::int64_t value) { entries.push_back(value); }
    void put(std::uint64_t value) { entries.push_back(static_cast<std::int64_t>(value)); }
    void put(bool value) { entries.push_back(value ? 1 : 0); }
    void put(const std::optional<std::string>& text) {
        put(text ? static_cast<std::int64_t>(std::hash<std::string>()(*text) >> 1) : -1);
    }
    /// A style by its serial number; 0 is nil.
    void putStyle(std::uint64_t serial) {
        put(serial == 0 ? 0
                        : static_cast<std::int64_t>(
                              styles_.try_emplace(serial, styles_.size() + 1).first->second));
    }
    /// An object, and from now on whether it lives.
    template <class Object>
    void put(const std::shared_ptr<Object>& object) {
        putLife(object);
    }
    void putLife(const std::shared_ptr<const void>& object) {
        if (!object) {
            return put(std::int64_t{0});
        }
        for (std::size_t i = seen_.size(); i > 0; --i) {
            if (seen_[i - 1].address == object.get() && !seen_[i - 1].life.expired()) {
                return put(static_cast<std::int64_t>(i));
            }
        }
        seen_.push_back({object.get(), object});
        put(static_cast<std::int64_t>(seen_.size()));
    }
    /// Which of the objects seen so far still live.
    void putLives() {
        std::uint64_t sum = 0; // wraps
        for (std::size_t i = 0; i < seen_.size(); ++i) {
            sum = seen_[i].life.expired() ? sum : sum * 31 + i + 1;
        }
        put(static_cast<std::int64_t>(sum));
    }

private:
    struct Seen {
        const void* address;
        std::weak_ptr<const void> life;
    };
    std::unordered_map<std::uint64_t, std::size_t> styles_;
    std::vector<Seen> seen_;
};

} // namespace zeltest
