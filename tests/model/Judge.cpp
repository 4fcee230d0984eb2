// SPDX-License-Identifier: Apache-2.0
#include "tests/model/Judge.h"

#include "tests/model/AllCommands.h"
#include "tests/model/FreeLocks.h"
#include "tests/model/LibraryKit.h"
#include "tests/model/PlainKit.h"

#include <algorithm>
#include <sstream>

namespace zeltest {

const Vocabulary& vocabulary() {
    static const auto words = [] {
        Vocabulary all;
        for (const auto& each : commands<PlainKit>()) {
            all.names.push_back(each.name);
            all.weights.push_back(each.weight);
        }
        return all;
    }();
    return words;
}

namespace {

std::string word(std::int64_t entry) {
    static const std::array<const char*, 15> marks = {
        "step",      "nested",   "result", "RAISED", "HANDLER", "OBJECT", "OBSERVER", "CHANGES",
        "INHERITED", "PROVIDER", "HOOK",   "TYPE",   "POSTED",  "STATE",  "VALUES"};
    const auto index = entry - static_cast<std::int64_t>(Mark::Step);
    return index >= 0 && index < static_cast<std::int64_t>(marks.size())
               ? std::string("\n    ") + marks[static_cast<std::size_t>(index)]
               : std::to_string(entry);
}

std::string describe(const Trace& library, const Trace& model) {
    std::ostringstream out;
    const auto parted = std::ranges::mismatch(library.entries, model.entries);
    const auto show = [&](const char* side, const Trace& trace, auto at) {
        constexpr std::ptrdiff_t around = 24;
        out << "  " << side << ':';
        auto each = at - std::min(around, at - trace.entries.begin());
        const auto end = at + std::min(around, trace.entries.end() - at);
        for (; each != end; ++each) {
            out << (each == at ? " >>>" : " ") << word(*each);
        }
        out << '\n';
    };
    show("library", library, parted.in1);
    show("model", model, parted.in2);
    return out.str();
}

/// Looks for locks that an exception has left behind, after some of the steps that raised one: it
/// takes a thread.
void checkLocks(const Player<LibraryKit>& library, std::size_t step) {
    constexpr std::size_t interval = 16;
    const auto raised = static_cast<std::int64_t>(Mark::Raised);
    if (step % interval == 0 &&
        std::ranges::find(library.trace.entries, raised) != library.trace.entries.end()) {
        requireFreeLocks(library);
    }
}

} // namespace

Verdict judge(const Script& script) {
    Verdict verdict;
    {
        Player<LibraryKit> library(script);
        Player<PlainKit> model(script);
        for (std::size_t i = 0; i <= script.steps.size() && !verdict.parted; ++i) {
            if (i < script.steps.size()) {
                library.step(script.steps[i]);
                model.step(script.steps[i]);
            } else {
                library.putReads();
                model.putReads();
            }
            if (library.trace.entries != model.trace.entries) {
                verdict.parted = i;
                verdict.difference = describe(library.trace, model.trace);
            }
            checkLocks(library, i);
            library.trace.entries.clear();
            model.trace.entries.clear();
        }
        verdict.played = library.played;
    }
    LibraryKit::freshen();
    PlainKit::freshen();
    return verdict;
}

namespace {

class Shrinking {
public:
    Shrinking(Script script, const std::function<bool(const Script&)>& differs)
        : script_(std::move(script)), differs_(differs) {}

    Script run() {
        bool thinner = true;
        while (thinner) {
            thinner = thin(script_.steps);
            for (auto& program : script_.programs) {
                thinner = thin(program) || thinner;
            }
        }
        simplify(script_.steps);
        for (auto& program : script_.programs) {
            simplify(program);
        }
        return std::move(script_);
    }

private:
    /// Takes away what can be missed, in ever smaller pieces. Answers whether anything went.
    bool thin(std::vector<Operation>& list) {
        const auto before = list.size();
        for (std::size_t piece = std::max<std::size_t>(before / 2, 1); piece > 0; piece /= 2) {
            for (std::size_t at = 0; at < list.size();) {
                auto whole = list;
                const auto from = list.begin() + static_cast<std::ptrdiff_t>(at);
                list.erase(from,
                           from + static_cast<std::ptrdiff_t>(std::min(piece, list.size() - at)));
                if (!differs_(script_)) {
                    list = std::move(whole);
                    at += piece;
                }
            }
        }
        return list.size() < before;
    }

    void simplify(std::vector<Operation>& list) {
        for (Operation& each : list) {
            for (unsigned& argument : each.arguments) {
                const unsigned found = argument;
                for (argument = 0; argument < found && !differs_(script_); ++argument) {
                }
            }
        }
    }

    Script script_;
    const std::function<bool(const Script&)>& differs_;
};

} // namespace

Script shrink(Script script, const std::function<bool(const Script&)>& differs) {
    return Shrinking(std::move(script), differs).run();
}

} // namespace zeltest
