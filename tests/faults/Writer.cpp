// SPDX-License-Identifier: Apache-2.0
#include "tests/faults/Writer.h"

#include "tests/faults/Report.h"

#include <ZelStyleKit/NSUserDefaults.h>

#include <random>

#include <unistd.h>

namespace zeltest {
namespace {

class Writer {
public:
    explicit Writer(const WriterOrder& order)
        : order_(order), random_(order.seed + order.round * std::uint64_t{1'000} + order.writer) {}

    [[noreturn]] void run() {
        for (std::uint32_t number = 1;; ++number) {
            write(number);
            readOwn();
            readShared();
        }
    }

private:
    void write(std::uint32_t number) {
        Report report;
        report.write = {order_.round, order_.writer, number};
        report.key = random_() % 2 == 0 ? order_.writer : sharedKey();
        report.removes = random_() % 8 == 0;
        const auto value = report.removes ? std::nullopt : std::optional(valueOf(report.write));
        say(report, Report::Kind::Begun);
        const bool durable = defaults_.setObject(value, keyNamed(report.key));
        say(report, durable ? Report::Kind::Acknowledged : Report::Kind::Refused);
        if (durable && report.key == order_.writer) {
            own_ = value;
            ownKnown_ = true;
        }
    }

    /// Nobody else writes this key.
    void readOwn() {
        if (ownKnown_ && read(order_.writer) != own_) {
            misread(order_.writer);
        }
    }

    void readShared() {
        const std::uint32_t key = sharedKey();
        const auto value = read(key);
        if (value && !writeOf(*value)) {
            misread(key);
        }
    }

    std::optional<std::string> read(std::uint32_t key) const {
        const auto value = reader_.objectForKey(keyNamed(key));
        return value ? std::optional(std::get<std::string>(*value)) : std::nullopt;
    }

    std::uint32_t sharedKey() {
        return order_.writers + static_cast<std::uint32_t>(random_() % order_.sharedKeys);
    }

    void misread(std::uint32_t key) {
        Report report;
        report.write = {order_.round, order_.writer, 0};
        report.key = key;
        say(report, Report::Kind::Misread);
    }

    void say(Report& report, Report::Kind kind) const {
        report.kind = kind;
        report.time = now();
        if (::write(order_.pipe, &report, sizeof report) != sizeof report) {
            ::_exit(1);
        }
    }

    WriterOrder order_;
    std::mt19937_64 random_;
    zel::NSUserDefaults defaults_;
    zel::NSUserDefaults reader_; // holds nothing of its own, as `defaults_` does once refused
    std::optional<std::string> own_;
    bool ownKnown_ = false; // from the first acknowledged write of this process
};

} // namespace

void writeUntilKilled(const WriterOrder& order) {
    Writer(order).run();
}

} // namespace zeltest
