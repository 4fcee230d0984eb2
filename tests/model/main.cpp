// SPDX-License-Identifier: Apache-2.0
#include "tests/model/Judge.h"
#include "tests/model/LibraryKit.h"
#include "tests/model/Options.h"
#include "tests/model/PlainKit.h"
#include "tests/model/Processes.h"
#include "tests/model/Shrink.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <new>
#include <stdexcept>

#include <sys/mman.h>

namespace {

using namespace zeltest;

constexpr End agreed = 0;
constexpr End differed = 1;  // or failed otherwise
constexpr End leftALock = 3; // 2: misused

End endOf(const Verdict& verdict) {
    return !verdict.parted ? agreed : verdict.hasLeftALock ? leftALock : differed;
}

/// How far scripts drawn at random have been played, for when their process ends in the middle.
struct Progress {
    std::uint64_t seed = 0;   // of the script that is played
    std::uint64_t played = 0; // operations of those before it
    std::uint64_t steps = 0;  // of those before it

    /// One that the processes made from now on share with this one.
    static Progress& shared() {
        void* const place = mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE,
                                 MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        if (place == MAP_FAILED) {
            throw std::bad_alloc();
        }
        return *new (place) Progress;
    }
};

/// Plays one script in a process of its own, where the library hasn't played any.
End playAlone(const Script& script, Output output, const Judging& judging) {
    return runInAProcess([&] { return endOf(judge(script, judging)); }, output);
}

/// As one script by itself is judged. Locks are looked for after each step: a script with steps
/// taken away leaves them after another one.
Judging thorough(const Options& options) {
    return {.compares = !options.libraryOnly,
            .lockInterval = 1,
            .patience = std::chrono::duration<double>(options.patience)};
}

/// Prints the least script that ends in that way, then how.
int report(const Options& options, const Script& script, End end) {
    Judging impatient = thorough(options);
    impatient.patience = std::min(impatient.patience, std::chrono::duration<double>(1));
    const Script least = shrink(script, [&](const Script& each) {
        return playAlone(each, Output::Hidden, impatient) == end;
    });
    std::cout << "# the least that shows it; again: " << options.againByScript() << '\n';
    print(std::cout, least, vocabulary());
    const End again = runInAProcess(
        [&] {
            const Verdict verdict = judge(least, thorough(options));
            std::cout << "# the sides part after step " << verdict.parted.value_or(0) << '\n'
                      << verdict.difference;
            return endOf(verdict);
        },
        Output::Shown);
    std::cout << "# its process ends with " << describe(again) << '\n';
    return differed;
}

int playFile(const Options& options) {
    std::ifstream file(options.script);
    if (!file) {
        throw std::invalid_argument("no file " + options.script);
    }
    const Script script = parse(file, vocabulary());
    const End end = playAlone(script, Output::Shown, thorough(options));
    if (end != agreed) {
        return report(options, script, end);
    }
    std::cout << "both sides agree\n";
    return 0;
}

/// Says once in a minute how far a long run is.
class Minutes {
public:
    void tell(const Progress& progress, std::uint64_t operations) {
        const auto now = std::chrono::steady_clock::now();
        if (now < next_) {
            return;
        }
        next_ = now + std::chrono::minutes(1);
        std::cerr << "# " << progress.played << " of " << operations << " operations ("
                  << 100 * progress.played / operations << " %), next seed " << progress.seed
                  << '\n';
    }

private:
    std::chrono::steady_clock::time_point next_ =
        std::chrono::steady_clock::now() + std::chrono::minutes(1);
};

/// Plays scripts until one ends otherwise than both sides agreeing.
End playAll(const Options& options, Progress& progress) {
    Minutes minutes;
    Judging judging = thorough(options);
    judging.lockInterval = 16;
    for (; progress.played < options.operations; ++progress.seed) {
        minutes.tell(progress, options.operations);
        const Script script = drawScript(progress.seed, options.steps, vocabulary());
        Verdict verdict;
        verdict.played = script.steps.size();
        const End end = options.firstSetup ? playAlone(script, Output::Shown, thorough(options))
                                           : endOf(verdict = judge(script, judging));
        if (end != agreed) {
            return end;
        }
        progress.played += verdict.played;
        progress.steps += script.steps.size();
    }
    return agreed;
}

int reportSeed(const Options& options, const Progress& progress, End end) {
    std::cout << "# " << describe(end) << " after " << progress.played << " operations, at seed "
              << progress.seed << "; again: " << options.again(progress.seed, 1) << '\n';
    if (isStopped(end) || progress.played >= options.operations) {
        return differed;
    }
    const Script script = drawScript(progress.seed, options.steps, vocabulary());
    const End alone =
        playAlone(script, Output::Hidden, thorough(options)); // which may see it sooner
    if (alone == agreed) {
        std::cout << "# alone it shows nothing; with all before it: "
                  << options.again(options.seed, progress.played + 1) << '\n';
        return differed;
    }
    return report(options, script, alone);
}

int playAtRandom(const Options& options) {
    const auto begin = std::chrono::steady_clock::now();
    Progress& progress = Progress::shared();
    progress.seed = options.seed;
    const End end = options.firstSetup
                        ? playAll(options, progress)
                        : runInAProcess(
                              [&] {
                                  const End played = playAll(options, progress);
                                  if (played == agreed) {
                                      std::exit(agreed); // as what looks for leaks wants it
                                  }
                                  return played;
                              },
                              Output::Shown);
    if (end != agreed) {
        return reportSeed(options, progress, end);
    }
    const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - begin;
    std::cout << progress.played << " operations, " << progress.steps << " of them steps of "
              << progress.seed - options.seed << " scripts, in " << spent.count()
              << " s: " << (options.libraryOnly ? "every lock is free" : "both sides agree")
              << '\n';
    return 0;
}

} // namespace

int main(int count, char** words) {
    try {
        const Options options = optionsOf(count, words);
        LibraryKit::mistake = options.mistake;
        LibraryKit::setUp(!options.firstSetup);
        PlainKit::setUp(!options.firstSetup);
        return options.script.empty() ? playAtRandom(options) : playFile(options);
    } catch (const std::exception& problem) {
        std::cerr << problem.what() << '\n';
        return differed;
    }
}
