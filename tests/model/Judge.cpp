// SPDX-License-Identifier: Apache-2.0
#include "tests/model/Judge.h"

#include "tests/model/AllCommands.h"
#include "tests/model/FreeLocks.h"
#include "tests/model/LibraryKit.h"
#include "tests/model/PlainKit.h"

#include <algorithm>
#include <memory>
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

bool hasRaised(const Trace& trace) {
    return std::ranges::find(trace.entries, static_cast<std::int64_t>(Mark::Raised)) !=
           trace.entries.end();
}

} // namespace

Verdict judge(const Script& script, const Judging& judging) {
    Verdict verdict;
    auto library = std::make_unique<Player<LibraryKit>>(script, judging.compares);
    auto model = judging.compares ? std::make_unique<Player<PlainKit>>(script, true) : nullptr;
    const auto onBothSides = [&](auto play) {
        play(*library);
        if (model) {
            play(*model);
        }
    };
    for (std::size_t i = 0; i <= script.steps.size() && !verdict.parted; ++i) {
        onBothSides([&](auto& player) {
            i < script.steps.size() ? player.step(script.steps[i]) : player.putReads();
        });
        if (model && library->trace.entries != model->trace.entries) {
            verdict.parted = i;
            verdict.difference = describe(library->trace, model->trace);
        } else if (i % judging.lockInterval == 0 && hasRaised(library->trace) &&
                   !locksAreFree(*library, judging.patience)) {
            verdict.parted = i;
            verdict.hasLeftALock = true;
            verdict.difference = "  library: an exception has left a lock\n";
            (void)library.release(); // a thread is stuck in it: nothing of it ends any more
            return verdict;
        }
        onBothSides([](auto& player) { player.trace.entries.clear(); });
    }
    verdict.played = library->played;
    library.reset();
    model.reset();
    LibraryKit::freshen();
    PlainKit::freshen();
    return verdict;
}

} // namespace zeltest
