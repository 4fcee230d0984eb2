// SPDX-License-Identifier: Apache-2.0
#include "tests/model/Script.h"

#include <algorithm>
#include <istream>
#include <numeric>
#include <ostream>
#include <random>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace zeltest {

namespace {

std::size_t commandNamed(std::string_view name, const Vocabulary& vocabulary) {
    const auto found = std::ranges::find(vocabulary.names, name);
    if (found == vocabulary.names.end()) {
        throw std::runtime_error("no operation of this name: " + std::string(name));
    }
    return static_cast<std::size_t>(found - vocabulary.names.begin());
}

class Drawing {
public:
    Drawing(std::uint64_t seed, const Vocabulary& vocabulary)
        : random_(seed), vocabulary_(vocabulary),
          total_(std::accumulate(vocabulary.weights.begin(), vocabulary.weights.end(), 0U)) {}

    unsigned below(unsigned limit) { return static_cast<unsigned>(random_() % limit); }

    /// One by name, its first argument given.
    Operation operation(std::string_view name, unsigned first) {
        Operation drawn = operation();
        drawn.command = commandNamed(name, vocabulary_);
        drawn.arguments[0] = first;
        return drawn;
    }

    Operation operation() {
        Operation drawn;
        unsigned at = below(total_);
        while (at >= vocabulary_.weights[drawn.command]) {
            at -= vocabulary_.weights[drawn.command++];
        }
        for (unsigned& argument : drawn.arguments) {
            argument = below(24);
        }
        return drawn;
    }

private:
    std::mt19937_64 random_;
    const Vocabulary& vocabulary_;
    const unsigned total_;
};

/// Something of everything, so that what follows finds something to work on.
void furnish(Script& script, Drawing& drawing) {
    const auto each = [&](std::string_view name, unsigned count) {
        for (unsigned i = 0; i < count; ++i) {
            script.steps.push_back(drawing.operation(name, i));
        }
    };
    each("takeDomain", 3);
    each("takeScheme", 4);
    each("newRoot", 2);
    each("newChild", 2);
    each("addStyle", 4);
    each("newObject", 7);
    each("moveBelow", 4);
    each("register", 6);
    each("registerObject", 3);
    each("observe", 2);
    each("newMode", 2);
}

/// Merged values and what applies to an object are computed when they are read: most scripts read
/// them now and then, so that they are found in all states, and some after each step.
void lookAfterEachStep(Script& script, Drawing& drawing) {
    std::vector<Operation> steps;
    for (const Operation& each : script.steps) {
        steps.push_back(each);
        steps.push_back(drawing.operation("look", 0));
    }
    script.steps = std::move(steps);
}

} // namespace

Script drawScript(std::uint64_t seed, std::size_t steps, const Vocabulary& vocabulary) {
    Drawing drawing(seed, vocabulary);
    Script script;
    furnish(script, drawing);
    while (script.steps.size() < steps) {
        script.steps.push_back(drawing.operation());
    }
    // Some scripts have quiet callbacks, so that what they reach isn't always shaken up.
    const unsigned most = drawing.below(4) * 2 + 1;
    for (auto& program : script.programs) {
        for (unsigned count = drawing.below(most); count > 0; --count) {
            program.push_back(drawing.operation());
        }
    }
    if (drawing.below(4) == 0) {
        lookAfterEachStep(script, drawing);
    }
    return script;
}

void print(std::ostream& out, const Script& script, const Vocabulary& vocabulary) {
    const auto line = [&](const Operation& operation) {
        out << vocabulary.names[operation.command];
        for (const unsigned argument : operation.arguments) {
            out << ' ' << argument;
        }
        out << '\n';
    };
    for (std::size_t i = 0; i < script.programs.size(); ++i) {
        for (const Operation& each : script.programs[i]) {
            out << 'p' << i << ' ';
            line(each);
        }
    }
    for (const Operation& each : script.steps) {
        line(each);
    }
}

Script parse(std::istream& in, const Vocabulary& vocabulary) {
    Script script;
    for (std::string text; std::getline(in, text);) {
        std::istringstream line(text);
        std::string word;
        if (!(line >> word) || word[0] == '#') {
            continue;
        }
        auto* target = &script.steps;
        if (word.size() > 1 && word[0] == 'p' &&
            std::isdigit(static_cast<unsigned char>(word[1]))) {
            target = &script.programs.at(std::stoul(word.substr(1)));
            line >> word;
        }
        Operation operation;
        operation.command = commandNamed(word, vocabulary);
        for (unsigned& argument : operation.arguments) {
            line >> argument;
        }
        target->push_back(operation);
    }
    return script;
}

} // namespace zeltest
