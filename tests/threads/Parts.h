// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/threads/Stage.h"

#include <memory>
#include <random>

namespace zeltest {

/// What one thread does, operation after operation.
class Part {
public:
    Part(Stage& onStage, Progress& ownProgress, std::uint64_t seed)
        : stage(onStage), progress(ownProgress), random_(seed) {}
    Part(const Part&) = delete;
    Part& operator=(const Part&) = delete;
    virtual ~Part() = default;

    /// Does one operation.
    virtual void act() = 0;
    /// After the threads' end, when all is quiet.
    virtual void check() {}

protected:
    Stage& stage;
    Progress& progress;

    /// From 0 up to before `end`.
    std::size_t any(std::size_t end) {
        return std::uniform_int_distribution<std::size_t>(0, end - 1)(random_);
    }
    template <class Range>
    auto& anyOf(Range& range) {
        return range[any(std::size(range))];
    }
    PaintedStyle& anyPainted() { return stage.painted[any(stage.painted.size())]; }

private:
    std::mt19937_64 random_;
};

using MakePart = std::unique_ptr<Part> (*)(Stage&, Progress&, std::uint64_t seed);

template <class Made>
std::unique_ptr<Part> makePart(Stage& stage, Progress& progress, std::uint64_t seed) {
    return std::make_unique<Made>(stage, progress, seed);
}

extern const MakePart makeReading;
extern const MakePart makeUpdating;
extern const MakePart makeInheriting;
extern const MakePart makeListening;
extern const MakePart makeNotifying;
extern const MakePart makeReentering;
extern const MakePart makeHosting;
extern const MakePart makeDirecting; ///< for the main thread alone

} // namespace zeltest
