// SPDX-License-Identifier: Apache-2.0
#include "tests/faults/Report.h"

#include <ZelStyleKit/NSUserDefaults.h>

#include <chrono>
#include <sstream>

#include <unistd.h>

namespace zeltest {
namespace {

std::optional<std::string> read(std::uint32_t writer) {
    // Holds nothing of its own, as who was refused does.
    const auto value = zel::NSUserDefaults().objectForKey(keyOf(writer));
    return value ? std::optional(std::get<std::string>(*value)) : std::nullopt;
}

void say(int pipe, Report::Kind kind, const WriteName& write) {
    const std::chrono::nanoseconds time = std::chrono::steady_clock::now().time_since_epoch();
    const Report report{kind, write, time.count()};
    if (::write(pipe, &report, sizeof report) != sizeof report) {
        ::_exit(1);
    }
}

} // namespace

std::optional<std::string> valueOf(const WriteName& write) {
    const std::uint32_t mixed = (write.round * 31 + write.writer) * 31 + write.number * 97;
    if (mixed % 8 == 0) {
        return std::nullopt;
    }
    return std::to_string(write.round) + ' ' + std::to_string(write.writer) + ' ' +
           std::to_string(write.number) + ' ' +
           std::string(mixed % 251, static_cast<char>('a' + mixed % 26));
}

bool isWhole(const std::string& value) {
    std::istringstream words(value);
    WriteName write;
    return words >> write.round >> write.writer >> write.number && valueOf(write) == value;
}

void writeUntilKilled(WriteName first, std::uint32_t writers, int pipe) {
    zel::NSUserDefaults defaults;
    bool isOwnKnown = false;
    std::optional<std::string> own;
    for (WriteName write = first;; ++write.number) {
        const auto value = valueOf(write);
        say(pipe, Report::Kind::Begun, write);
        const bool durable = defaults.setObject(value, keyOf(write.writer));
        say(pipe, durable ? Report::Kind::Acknowledged : Report::Kind::Refused, write);
        if (durable) {
            own = value;
            isOwnKnown = true;
        }
        const auto other = read((write.writer + write.number * 7919) % writers);
        if ((isOwnKnown && read(write.writer) != own) || (other && !isWhole(*other))) {
            say(pipe, Report::Kind::Misread, write);
        }
    }
}

} // namespace zeltest
