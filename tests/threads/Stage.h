// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/threads/Progress.h"

#include <ZelStyleKit/ZelStyleKit.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
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

} // namespace zeltest
