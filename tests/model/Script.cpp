// SPDX-License-Identifier: Apache-2.0
#include "tests/model/Script.h"

#include "tests/model/Commands.h"
#include "tests/model/PlainKit.h"

#include <algorithm>
#include <ostream>
#include <utility>

namespace zeltest {

namespace {

/// Something of everything, so that what follows finds something to work on.
constexpr std::pair<std::string_view, unsigned> furniture[] = {
    {"takeDomain", 3},     {"takeScheme", 4}, {"newRoot", 2},   {"newChild", 2},
    {"addStyle", 4},       {"newObject", 7},  {"moveBelow", 4}, {"register", 6},
    {"registerObject", 3}, {"observe", 2},    {"newMode", 2}};

class Reading {
public:
    explicit Reading(std::string_view bytes) : rest_(bytes) {
        for (const auto& each : commands_) {
            totalWeight_ += each.weight;
        }
    }

    [[nodiscard]] bool isAtEnd() const { return rest_.empty(); }

    unsigned byte() {
        if (rest_.empty()) {
            return 0;
        }
        const auto read = static_cast<unsigned char>(rest_.front());
        rest_.remove_prefix(1);
        return read;
    }

    /// Two bytes draw which one by the weights, since one has fewer values than the weights' sum.
    Operation operation() {
        const unsigned high = byte();
        unsigned at = (high * 256 + byte()) % totalWeight_;
        std::size_t command = 0;
        while (at >= commands_[command].weight) {
            at -= commands_[command++].weight;
        }
        return {command, {argument(), argument(), argument(), argument()}};
    }

    /// One by name, its first argument given.
    Operation operation(std::string_view name, unsigned first) {
        const auto found = std::ranges::find(commands_, name, &Command<PlainKit>::name);
        return {static_cast<std::size_t>(found - commands_.begin()),
                {first, argument(), argument(), argument()}};
    }

private:
    unsigned argument() { return byte() % 24; }

    const std::vector<Command<PlainKit>>& commands_ = commands<PlainKit>();
    std::string_view rest_;
    unsigned totalWeight_ = 0;
};

} // namespace

Script scriptOf(std::string_view bytes) {
    Reading reading(bytes);
    Script script;
    const unsigned character = reading.byte();
    // Merged values and what applies to an object are computed when they are read: most scripts
    // read them now and then, so that they are found in all states, and some after each step.
    const bool looks = character % 4 == 3;
    // Some scripts have quiet callbacks, so that what they reach isn't always shaken up.
    const unsigned mostOfAProgram = character / 4 % 4 * 2 + 1;
    for (auto& program : script.programs) {
        for (unsigned count = reading.byte() % mostOfAProgram; count > 0; --count) {
            program.push_back(reading.operation());
        }
    }
    const auto add = [&](const Operation& step) {
        script.steps.push_back(step);
        if (looks) {
            script.steps.push_back(Reading({}).operation("look", 0));
        }
    };
    for (const auto& [name, count] : furniture) {
        for (unsigned i = 0; i < count; ++i) {
            add(reading.operation(name, i));
        }
    }
    while (!reading.isAtEnd()) {
        add(reading.operation());
    }
    return script;
}

void print(std::ostream& out, const Script& script) {
    const auto line = [&](char kind, std::size_t number, const Operation& operation) {
        out << kind << number << ' ' << commands<PlainKit>()[operation.command].name;
        for (const unsigned argument : operation.arguments) {
            out << ' ' << argument;
        }
        out << '\n';
    };
    for (std::size_t i = 0; i < script.programs.size(); ++i) {
        for (const Operation& each : script.programs[i]) {
            line('p', i, each);
        }
    }
    for (std::size_t i = 0; i < script.steps.size(); ++i) {
        line('s', i, script.steps[i]);
    }
}

} // namespace zeltest
