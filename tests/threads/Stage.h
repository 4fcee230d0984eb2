// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/threads/Progress.h"

#include <ZelStyleKit/ZelStyleKit.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace zeltest {

/// A style whose label colour is written with version after version, its accent colour after it,
/// and so is a text. Every version's components say which one it is.
class PaintedStyle {
public:
    explicit PaintedStyle(std::shared_ptr<zel::ZelStyle> painted);

    const std::shared_ptr<zel::ZelStyle> style;

    /// Writes the next version, in an update of the style.
    void paint();
    /// The last version whose writing has begun.
    [[nodiscard]] std::uint64_t version() const noexcept { return version_.load(); }

    static zel::NSColor colorOf(std::uint64_t version);
    /// The version that a colour is of; ends the process where it is none, or torn.
    static std::uint64_t versionOf(const std::optional<zel::NSColor>& color);
    static constexpr std::string_view textKey = "threads' text";
    static std::uint64_t versionOfText(const std::optional<zel::ZelAttributeValue>& text);

private:
    std::atomic<std::uint64_t> version_{0};
};

/// What the handler of one owner notes; kept by the handler and by whoever registered it.
struct Diary {
    explicit Diary(std::atomic<std::int64_t>& count) : living(count) { ++living; }
    Diary(const Diary&) = delete;
    Diary& operator=(const Diary&) = delete;
    ~Diary() { --living; }

    std::atomic<std::int64_t>& living;
    std::atomic<bool> mayBeCalled{false};
    std::atomic<std::uint64_t> told{0}; ///< the serial of the style, 0 for none
    std::atomic<std::uint64_t> initialCalls{0};
    std::atomic<std::uint64_t> registrations{0};

    void note(const std::shared_ptr<zel::ZelStyle>& style, zel::ZelStyleChangeEvent event);
};

/// What all threads share. Everything in it is there from the beginning to the end.
class Stage {
public:
    Stage();
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    const std::shared_ptr<zel::ZelStyleDomain> domain = zel::ZelStyleDomain::defaultDomain();
    const std::shared_ptr<zel::ZelStyleDomain> editor =
        zel::ZelStyleDomain::domainForIdentifier("editor");
    /// Root styles, in this order: light and dark of the default domain, the editor's.
    std::deque<PaintedStyle> painted;
    /// Styles that follow a root, the i-th the root i, and take its label colour for their accent.
    std::vector<std::shared_ptr<zel::ZelStyle>> followers;
    /// Objects that are never registered: what others stand below, and notifications' targets.
    std::vector<std::shared_ptr<zel::NSObject>> targets;

    std::atomic<std::int64_t> livingDiaries{0};
    std::atomic<bool> isOver{false};

    [[nodiscard]] bool knows(const std::shared_ptr<zel::ZelStyle>& style) const;
};

/// A styleable object whose answers never change.
class Member : public zel::NSObject, public zel::ZelStyleable {
public:
    Member(std::optional<std::string> domain, std::shared_ptr<zel::NSObject> parent)
        : domain_(std::move(domain)), parent_(std::move(parent)) {}

    std::shared_ptr<Diary> diary; ///< of a handler object, if it keeps one; set before that

    const zel::ZelStyleable* asZelStyleable() const noexcept override { return this; }
    std::optional<std::string> domainIdentifierOfZelStyleable() const override { return domain_; }
    std::shared_ptr<zel::NSObject> parentZelStyleable() const override { return parent_; }
    void styleChangedWithEvent(const std::shared_ptr<zel::ZelStyle>& style,
                               zel::ZelStyleChangeEvent event) override {
        if (diary) {
            diary->note(style, event);
        }
    }

private:
    const std::optional<std::string> domain_;
    const std::shared_ptr<zel::NSObject> parent_;
};

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
