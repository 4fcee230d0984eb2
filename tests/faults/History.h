// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/faults/Report.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace zeltest {

/// What the writers did, and so what the file may hold.
/// A write took place at some moment between its report before the call and the one after it, or
/// the death of its writer; that of a killed writer may never have. Of the writes to a key, each
/// that no acknowledged one followed may be the last.
class History {
public:
    /// What a key holds; none for nothing.
    using Value = std::optional<std::string>;

    void add(const Report& report);
    /// The writer was dead by then. After all its reports.
    void addDeath(std::uint32_t writer, std::int64_t time);

    /// What a key may hold, once all writers are dead.
    [[nodiscard]] bool mayHold(std::uint32_t key, const Value& value) const;
    /// The same in words, each write with its times.
    [[nodiscard]] std::string describe(std::uint32_t key) const;
    /// Forgets all but that this is what the key holds by now.
    void settle(std::uint32_t key, const Value& value);

    std::uint64_t begun = 0;
    std::uint64_t acknowledged = 0;
    std::uint64_t refused = 0;
    std::uint64_t cutShort = 0; ///< by the writer's death
    std::string misread;        ///< what a writer found wrong, if anything

    // Nanoseconds from the report before a call to the one after it, at most.
    std::int64_t longestRefused = 0;      ///< nothing but waiting for others
    std::int64_t longestAcknowledged = 0; ///< and the disk

private:
    struct Write {
        WriteName name;
        Value value;
        std::int64_t begin = 0;
        std::int64_t end = 0;
        bool acknowledged = false;
    };
    struct UnderWay {
        std::uint32_t key = 0;
        Write write;
    };

    std::map<std::uint32_t, std::vector<Write>> writes_; // by key
    std::map<std::uint32_t, UnderWay> underWay_;         // by writer
};

} // namespace zeltest
