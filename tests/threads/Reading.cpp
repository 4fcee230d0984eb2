// SPDX-License-Identifier: Apache-2.0
#include "tests/threads/Parts.h"

namespace zeltest {
namespace {

using namespace zel;

/// Reads values and finds styles: what was written, and never an older version after a newer one.
class Reading final : public Part {
public:
    using Part::Part;

    void act() override {
        const std::size_t index = any(stage.painted.size());
        switch (any(8)) {
        case 0:
            return readColors(index);
        case 1:
            return readByKey(index);
        case 2:
            return readOwn(index);
        case 3:
            return readAll(index);
        case 4:
            return readFollower(index);
        case 5:
            return readKind(index);
        case 6:
            return resolve();
        default:
            return lookUp(index);
        }
    }

private:
    /// Versions of one style, by where they were read.
    struct Last {
        std::uint64_t label = 0, accent = 0, text = 0, child = 0, seed = 0;
    };

    void expect(std::uint64_t& last, std::uint64_t read, const PaintedStyle& painted) {
        require(read >= last, "an older value is read after a newer one");
        require(read <= painted.version(), "a value is read that was not written yet");
        last = read;
    }

    void readColors(std::size_t index) {
        progress.begin("read typed attributes");
        const PaintedStyle& painted = stage.painted[index];
        expect(last_[index].label, PaintedStyle::versionOf(painted.style->labelColor()), painted);
        expect(last_[index].accent, PaintedStyle::versionOf(painted.style->accentColor()), painted);
    }
    void readByKey(std::size_t index) {
        progress.begin("read by key");
        const PaintedStyle& painted = stage.painted[index];
        const auto label = painted.style->effectiveValueForAttribute("labelColor");
        require(label && label->color(), "a colour is missing under its key");
        expect(last_[index].label, PaintedStyle::versionOf(*label->color()), painted);
        const auto text = painted.style->effectiveValueForAttribute(PaintedStyle::textKey);
        expect(last_[index].text, PaintedStyle::versionOfText(text), painted);
        require(!painted.style->effectiveValueForAttribute("nobody wrote this"),
                "a value of no key");
    }
    void readOwn(std::size_t index) {
        progress.begin("read own values");
        const PaintedStyle& painted = stage.painted[index];
        const auto label = painted.style->valueForAttribute("labelColor");
        require(label && label->color(), "an own colour is missing");
        expect(last_[index].label, PaintedStyle::versionOf(*label->color()), painted);
    }
    void readAll(std::size_t index) {
        progress.begin("read all values at once");
        const PaintedStyle& painted = stage.painted[index];
        const auto values = painted.style->effectiveValues();
        const auto label = PaintedStyle::versionOf(*values->at("labelColor").color());
        const auto accent = PaintedStyle::versionOf(*values->at("accentColor").color());
        require(label == accent || label == accent + 1,
                "values of different moments stand together");
        expect(last_[index].label, label, painted);
    }
    void readFollower(std::size_t index) {
        progress.begin("read a child's values");
        const auto& child = stage.followers[index];
        const PaintedStyle& painted = stage.painted[index];
        expect(last_[index].child, PaintedStyle::versionOf(child->accentColor()), painted);
        require(child->isChildOf(painted.style), "a child has lost its parent");
        require(child->parentStyle() == painted.style, "a child has another parent");
        require(child->identifier() == "card", "a child has another name");
    }
    void readKind(std::size_t index) {
        progress.begin("read a style's kind and seed");
        const auto& style = stage.painted[index].style;
        require(style->isLightStyle() == (index == 0), "a style's type has changed");
        require(style->isDarkStyle() == (index == 1), "a style's type has changed");
        require(style->isCustomStyle() == (index == 2), "a style's type has changed");
        const std::uint64_t seed = style->seed();
        require(seed >= last_[index].seed, "a seed went back");
        last_[index].seed = seed;
    }
    void resolve() {
        progress.begin("resolve a style");
        const auto& target = anyOf(stage.targets);
        require(stage.knows(ZelStyle::forStyleable(target)), "an unknown style applies");
        require(stage.knows(stage.domain->styleFor(target)), "an unknown style applies");
        require(stage.knows(stage.domain->mainStyle()), "an unknown main style");
        const auto card = stage.domain->styleForIdentifier("card"); // none in the default scheme
        require(!card || stage.knows(card), "an unknown style is found");
        require(ZelStyleDomain::isEqualOrChildOf(target, target), "an object isn't itself");
        require(ZelStyleDomain::domainForStyleable(target) != nullptr, "a styleable has no domain");
        (void)target->customZelStyleIdentifier();
        (void)target->customZelStyleSchemeIdentifier();
        (void)target->lastZelStyle();
    }
    void lookUp(std::size_t index) {
        progress.begin("look a style up in its scheme");
        const auto& style = stage.painted[index].style;
        const auto scheme = style->scheme();
        require(scheme && scheme->domain() == style->domain(), "a style is out of its domain");
        require(scheme->styleForIdentifier("main") == style, "a scheme has lost its style");
        require(scheme->stylesByIdentifier().contains("card"), "a scheme has lost a child");
        require(scheme->identifier().has_value(), "a scheme has lost its name");
        require(stage.domain->currentScheme() != nullptr, "no scheme is current");
        (void)stage.domain->schemeFollowsSystem();
    }

    std::array<Last, 3> last_;
};

} // namespace

const MakePart makeReading = makePart<Reading>;

} // namespace zeltest
