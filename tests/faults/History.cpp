// SPDX-License-Identifier: Apache-2.0
#include "tests/faults/History.h"

#include <algorithm>
#include <utility>

namespace zeltest {

void History::add(const Report& report) {
    if (report.kind == Report::Kind::Misread) {
        misread = keyNamed(report.key) + " by writer " + std::to_string(report.write.writer);
        return;
    }
    if (report.kind == Report::Kind::Begun) {
        ++begun;
        const Value value = report.removes ? Value() : valueOf(report.write);
        underWay_[report.write.writer] = {report.key, {report.write, value, report.time, 0, false}};
        return;
    }
    UnderWay ended = std::move(underWay_.extract(report.write.writer).mapped());
    const std::int64_t taken = report.time - ended.write.begin;
    if (report.kind == Report::Kind::Refused) {
        ++refused; // and so the file was left as it was
        longestRefused = std::max(longestRefused, taken);
        return;
    }
    ++acknowledged;
    longestAcknowledged = std::max(longestAcknowledged, taken);
    ended.write.end = report.time;
    ended.write.acknowledged = true;
    writes_[ended.key].push_back(std::move(ended.write));
}

void History::addDeath(std::uint32_t writer, std::int64_t time) {
    if (auto found = underWay_.extract(writer)) {
        ++cutShort;
        found.mapped().write.end = time;
        writes_[found.mapped().key].push_back(std::move(found.mapped().write));
    }
}

bool History::mayHold(std::uint32_t key, const Value& value) const {
    const auto found = writes_.find(key);
    if (found == writes_.end()) {
        return !value;
    }
    // A key that nothing was ever written to holds nothing from the beginning.
    std::int64_t lastBegin = 0;
    bool everSettled = false;
    for (const Write& write : found->second) {
        if (write.acknowledged) {
            lastBegin = std::max(lastBegin, write.begin);
            everSettled = true;
        }
    }
    return (!everSettled && !value) ||
           std::any_of(found->second.begin(), found->second.end(), [&](const Write& write) {
               return write.value == value && write.end >= lastBegin;
           });
}

std::string History::describe(std::uint32_t key) const {
    std::string result;
    const auto found = writes_.find(key);
    if (found != writes_.end()) {
        for (const Write& write : found->second) {
            result += "  " + std::to_string(write.begin) + " to " + std::to_string(write.end) +
                      (write.acknowledged ? ": " : " (killed): ") +
                      write.value.value_or("(removed)") + '\n';
        }
    }
    return result;
}

void History::settle(std::uint32_t key, const Value& value) {
    writes_[key] = {{{}, value, 0, 0, true}};
}

} // namespace zeltest
