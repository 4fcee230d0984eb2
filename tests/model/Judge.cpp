// SPDX-License-Identifier: Apache-2.0
#include "tests/model/Judge.h"

#include "tests/model/AppearanceCommands.h"
#include "tests/model/DomainCommands.h"
#include "tests/model/LibraryKit.h"
#include "tests/model/ObjectCommands.h"
#include "tests/model/PlainKit.h"
#include "tests/model/PlayerState.h"
#include "tests/model/StyleCommands.h"

#include <algorithm>
#include <memory>
#include <sstream>

namespace zeltest {

template <class Kit>
const std::vector<Command<Kit>>& commands() {
    static const auto all = [] {
        std::vector<Command<Kit>> list;
        for (const auto& subject : {styleCommands<Kit>(), domainCommands<Kit>(),
                                    objectCommands<Kit>(), appearanceCommands<Kit>()}) {
            list.insert(list.end(), subject.begin(), subject.end());
        }
        return list;
    }();
    return all;
}

template const std::vector<Command<PlainKit>>& commands<PlainKit>();

namespace {

/// Leaves a light system, no domain but "_reset"'s, no mode, nothing to be told, and the two
/// providers that every process begins with, whatever stands in the registry now.
template <class Kit>
void freshen() {
    const auto shared = Kit::Manager::sharedStyleManager();
    while (!shared->modes().empty()) {
        shared->removeMode(shared->modes().front());
    }
    Kit::setSystemColors(false);
    Kit::store(std::nullopt);
    Kit::setDarkAppearanceExists(true);
    Kit::Domain::domainForIdentifier("_reset");
    Kit::appear("NSAppearanceNameAqua");
    Kit::tracker().determineFromSystemAppearance();
    Kit::drain();
    for (const auto& each : Kit::providers()) {
        Kit::Style::removeDefaultValueProvider(each);
    }
    for (auto each = Kit::providers().rbegin(); each != Kit::providers().rend(); ++each) {
        Kit::Style::addDefaultValueProvider(*each); // "main" goes to the front
    }
}

std::string word(std::int64_t entry) {
    const auto index = static_cast<std::size_t>(entry - firstMark); // wraps
    return index < marks.size() ? "\n    " + std::string(marks[index]) : std::to_string(entry);
}

/// Both sides' entries around the first one that isn't the same.
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

} // namespace

void setUp(bool withStyles) {
    zel::NSUserDefaults::standardUserDefaults().setStore(
        std::make_shared<zel::NSUserDefaultsInMemory>());
    zel::NSBundle::setStringTable([](std::string_view key) { return std::string(key); });
    zel::NSApplication::sharedApplication();
    LibraryKit::tracker();
    LibraryKit::providers();
    if (withStyles) {
        LibraryKit::Domain::setupStyles();
        PlainKit::Domain::setupStyles();
    }
    freshen<LibraryKit>();
    freshen<PlainKit>();
}

Verdict judge(const Script& script, Sides sides) {
    auto library = std::make_unique<Player<LibraryKit>>(script, sides == Sides::Both);
    auto model = sides == Sides::Both ? std::make_unique<Player<PlainKit>>(script, true) : nullptr;
    const auto onBothSides = [&](auto play) {
        play(*library);
        if (model) {
            play(*model);
        }
    };
    for (std::size_t i = 0; i <= script.steps.size(); ++i) {
        onBothSides([&](auto& player) {
            i < script.steps.size() ? player.step(script.steps[i]) : player.putReads();
        });
        const bool hasLeftALock = LibraryKit::holdsALock();
        if (hasLeftALock || (model && library->entries != model->entries)) {
            const std::string step = "after step " + std::to_string(i) + ":\n";
            const std::string found =
                hasLeftALock ? "  library: a lock is left\n" : describe(*library, *model);
            (void)library.release(); // whose end may wait for a lock
            return {0, step + found};
        }
        onBothSides([](auto& player) { player.entries.clear(); });
    }
    const std::uint64_t played = library->played;
    library.reset();
    model.reset();
    freshen<LibraryKit>();
    freshen<PlainKit>();
    return {played, {}};
}

} // namespace zeltest
