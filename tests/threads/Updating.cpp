// SPDX-License-Identifier: Apache-2.0
#include "tests/threads/Parts.h"

#include <stdexcept>

namespace zeltest {
namespace {

using namespace zel;

/// Updates styles, observes their updates, writes values on the side.
class Updating final : public Part {
public:
    using Part::Part;

    void act() override {
        PaintedStyle& painted = anyPainted();
        switch (any(8)) {
        case 0:
        case 1:
            progress.begin("update a style");
            return painted.paint();
        case 2:
            return cancel(*painted.style);
        case 3:
            return raise(*painted.style);
        case 4:
            return updateInside(*painted.style);
        case 5:
            return writeAside(*painted.style);
        case 6:
            return observe(painted.style);
        default:
            return letGoOfAnObserver();
        }
    }

    void check() override {
        for (const Observed& each : observed_) {
            require(each.calls->load() > 0, "an observer was not even called at first");
            each.style->removeStyleUpdateObserverWithOwner(each.owner);
            const auto calls = each.calls->load();
            each.style->updateStyleWithChanges(nullptr);
            require(each.calls->load() == calls, "an observer is called after its removal");
        }
        observed_.clear();
    }

private:
    struct Observed {
        std::shared_ptr<ZelStyle> style;
        std::shared_ptr<NSObject> owner;
        std::shared_ptr<std::atomic<std::uint64_t>> calls;
    };

    void cancel(ZelStyle& style) {
        progress.begin("cancel an update");
        style.updateStyleWithChanges([](const auto&) { return false; });
    }
    void raise(ZelStyle& style) {
        progress.begin("raise in an update");
        bool raised = false;
        try {
            style.updateStyleWithChanges(
                [](const auto&) -> bool { throw std::runtime_error("on purpose"); });
        } catch (const std::runtime_error&) {
            raised = true;
        }
        require(raised, "an exception was swallowed");
    }
    void updateInside(ZelStyle& style) {
        progress.begin("update inside an update");
        PaintedStyle& other = anyPainted();
        style.updateStyleWithChanges([&](const auto&) {
            other.paint();
            return true;
        });
    }
    void writeAside(ZelStyle& style) {
        progress.begin("write a value aside");
        const std::string key = "aside " + std::to_string(any(20));
        switch (any(3)) {
        case 0:
            return style.setValue(PaintedStyle::colorOf(any(100)), key);
        case 1:
            return style.setValue(ZelAttributeValue(any(100)), key);
        default:
            return style.setValue(std::nullopt, key);
        }
    }
    void observe(const std::shared_ptr<ZelStyle>& style) {
        progress.begin("add an update observer");
        Observed added{style, alloc<NSObject>(), std::make_shared<std::atomic<std::uint64_t>>(0)};
        style->addStyleUpdateObserver(
            [calls = added.calls](const auto&, const auto& updated, bool) {
                (void)updated->labelColor();
                ++*calls;
            },
            added.owner, true);
        observed_.push_back(std::move(added));
        if (observed_.size() > 20) {
            letGoOfAnObserver();
        }
    }
    void letGoOfAnObserver() {
        if (observed_.empty()) {
            return;
        }
        Observed gone =
            std::exchange(observed_[any(observed_.size())], std::move(observed_.back()));
        observed_.pop_back();
        if (any(2) == 0) {
            progress.begin("end the owner of an observer");
            gone.owner.reset();
            return;
        }
        progress.begin("remove an update observer");
        gone.style->removeStyleUpdateObserverWithOwner(gone.owner);
        const auto calls = gone.calls->load();
        gone.style->updateStyleWithChanges(nullptr);
        require(gone.calls->load() == calls, "an observer is called after its removal");
        require(gone.calls.use_count() == 1, "an observer is kept after its removal");
    }

    std::vector<Observed> observed_;
};

/// Makes styles below others, reads them and lets them go.
class Inheriting final : public Part {
public:
    Inheriting(Stage& onStage, Progress& ownProgress, std::uint64_t seed)
        : Part(onStage, ownProgress, seed), prefix_("child " + std::to_string(seed) + " ") {}

    void act() override {
        PaintedStyle& root = anyPainted();
        switch (any(4)) {
        case 0:
            return follow(root);
        case 1:
            return followFar(root);
        case 2:
            return inheritOnly(root);
        default:
            return addToScheme(root);
        }
    }

private:
    static std::shared_ptr<ZelStyle> childOf(const std::shared_ptr<ZelStyle>& parent) {
        return parent->inheritedStyleWithChanges(
            [](const auto& above, const auto& child) {
                child->setAccentColor(above->labelColor());
            },
            std::nullopt, nullptr);
    }
    static void expectColors(const ZelStyle& child, const PaintedStyle& root) {
        const auto label = PaintedStyle::versionOf(child.labelColor());
        require(label <= root.version(), "a child has what was not written yet");
        require(PaintedStyle::versionOf(child.accentColor()) <= root.version(),
                "a child has what was not written yet");
    }

    void follow(const PaintedStyle& root) {
        progress.begin("make a style that follows");
        const auto child = childOf(root.style);
        expectColors(*child, root);
        kept_[any(kept_.size())] = child; // and lets another one go
    }
    void followFar(const PaintedStyle& root) {
        progress.begin("make a chain of styles");
        std::vector<std::shared_ptr<ZelStyle>> chain{root.style};
        const std::size_t length = 2 + any(5);
        while (chain.size() < length) {
            chain.push_back(childOf(chain.back()));
        }
        expectColors(*chain.back(), root);
        chain.back()->updateStyleWithChanges(nullptr);
        require(chain.back()->isChildOf(root.style), "a chain is broken");
    }
    void inheritOnly(const PaintedStyle& root) {
        progress.begin("make a style that inherits, and move it");
        const auto child = alloc<ZelStyle>()->initWithIdentifier("c", nullptr, root.style);
        expectColors(*child, root);
        child->setParentStyle(anyPainted().style);
        child->setIdentifier(std::nullopt);
        child->setDomain(stage.domain);
        child->setScheme(nullptr);
        child->setValue(std::nullopt, "labelColor");
        require(!child->labelColor(), "a null doesn't hide what is above it");
    }
    void addToScheme(const PaintedStyle& root) {
        progress.begin("add a style to a scheme and remove it");
        const auto scheme = root.style->scheme();
        const std::string identifier = prefix_ + std::to_string(any(4));
        const auto child = root.style->inheritedStyleWithChanges(
            [](const auto& above, const auto& made) { made->setAccentColor(above->labelColor()); },
            identifier, scheme);
        require(scheme->styleForIdentifier(identifier) == child, "a style isn't in its scheme");
        expectColors(*child, root);
        if (any(2) == 0) {
            scheme->removeStyle(child);
            require(!scheme->styleForIdentifier(identifier), "a removed style is found");
        }
    }

    const std::string prefix_; // nobody else's identifiers begin with it
    std::array<std::shared_ptr<ZelStyle>, 12> kept_;
};

} // namespace

const MakePart makeUpdating = makePart<Updating>;
const MakePart makeInheriting = makePart<Inheriting>;

} // namespace zeltest
