// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace zeltest {

/// Which write of a run it is: no two have the same.
struct WriteName {
    std::uint32_t round = 0;
    std::uint32_t writer = 0;
    std::uint32_t number = 0;
    friend bool operator==(const WriteName&, const WriteName&) = default;
};

/// What a write stores: its name and a filling of 0 to 250 letters that follows from it, so that a
/// value says by itself whether it is whole.
std::string valueOf(const WriteName& write);

/// Whose value it is; none where no write stores that.
std::optional<WriteName> writeOf(const std::string& value);

} // namespace zeltest
