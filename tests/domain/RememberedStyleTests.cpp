// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Recorder.h"

namespace zeltest {
namespace {

using namespace zel;

/// What may give an object another style, done between two deliveries that remember what they find:
/// the next one must not go by what was remembered. Everything that is public and changes what is
/// found is here.
class RememberedStyleTests : public StylingTests {
protected:
    const std::shared_ptr<ZelStyleDomain> domain = ZelStyleDomain::defaultDomain();
    const std::shared_ptr<ZelStyleScheme> scheme = domain->defaultScheme();
    std::shared_ptr<ZelStyle> main = addStyle(scheme, "main");
    std::shared_ptr<ZelStyle> card = addStyle(scheme, "card");
    const std::shared_ptr<ZelStyle> dark = addStyle(domain->darkScheme(), "main");
    const std::shared_ptr<NSView> window = alloc<NSView>();
    const std::shared_ptr<NSView> panel = alloc<NSView>();
    const std::shared_ptr<NSView> label = alloc<NSView>();
    Recorder recorder;

    RememberedStyleTests() {
        window->addSubview(panel);
        panel->addSubview(label);
        domain->registerChangeHandler(recorder.handler("label"), label);
        for (int round = 0; round < 3; ++round) { // so that everything is remembered
            deliver();
            card->updateStyleWithChanges(nullptr);
        }
        recorder.take();
    }
    void deliver() { domain->notifyForStyleChangeOf(nullptr, {}); }
    /// The styles that the label is called with, by deliveries that don't force any.
    StyleCalls called() {
        deliver();
        return recorder.take();
    }
    static StyleCalls once(const std::shared_ptr<ZelStyle>& style) { return {{"label", style, 1}}; }
};

TEST_F(RememberedStyleTests, SetCustomZelStyleIdentifierAbove) {
    window->setCustomZelStyleIdentifier("card");
    EXPECT_EQ(recorder.take(), once(card));
    EXPECT_EQ(domain->styleFor(label), card);
    window->setCustomZelStyleIdentifier(std::nullopt);
    EXPECT_EQ(recorder.take(), once(main));
}

TEST_F(RememberedStyleTests, SetCustomZelStyleSchemeIdentifierAbove) {
    panel->setCustomZelStyleSchemeIdentifier("dark");
    EXPECT_EQ(recorder.take(), once(dark));
    panel->setCustomZelStyleSchemeIdentifier(std::nullopt);
    EXPECT_EQ(recorder.take(), once(main));
}

TEST_F(RememberedStyleTests, SetLastZelStyle) {
    label->setLastZelStyle(card);
    EXPECT_EQ(called(), once(main));
    label->setLastZelStyle(card);
    card->updateStyleWithChanges(nullptr); // of another family
    EXPECT_EQ(recorder.take(), once(main));
}

TEST_F(RememberedStyleTests, AddSubviewAndRemoveFromSuperview) {
    const auto other = alloc<NSView>();
    other->setCustomZelStyleIdentifier("card");
    other->addSubview(panel);
    EXPECT_EQ(called(), once(card));
    panel->removeFromSuperview();
    EXPECT_EQ(called(), once(main));
}

TEST_F(RememberedStyleTests, TheEndOfAView) {
    auto other = alloc<NSView>();
    other->setCustomZelStyleIdentifier("card");
    other->addSubview(panel);
    EXPECT_EQ(called(), once(card));
    other.reset();
    EXPECT_EQ(called(), once(main));
}

TEST_F(RememberedStyleTests, AddStyleAndRemoveStyle) {
    label->setCustomZelStyleIdentifier("card");
    recorder.take();
    const auto newer = addStyle(scheme, "card");
    EXPECT_EQ(called(), once(newer));
    scheme->removeStyle(newer);
    EXPECT_EQ(called(), once(main));
}

TEST_F(RememberedStyleTests, SetStylesByIdentifier) {
    label->setCustomZelStyleIdentifier("card");
    recorder.take();
    scheme->setStylesByIdentifier({{"main", main}, {"card", dark}});
    EXPECT_EQ(called(), once(dark));
}

TEST_F(RememberedStyleTests, SetCurrentScheme) {
    domain->setCurrentScheme(domain->darkScheme());
    EXPECT_EQ(recorder.take(), once(dark));
    domain->setCurrentScheme(scheme);
    EXPECT_EQ(recorder.take(), once(main));
}

TEST_F(RememberedStyleTests, TheMainStyleStaysUntilTheNextSwitch) {
    const auto newer = addStyle(scheme, "main");
    EXPECT_EQ(called(), StyleCalls{});
    domain->setCurrentScheme(domain->darkScheme());
    recorder.take();
    domain->setCurrentScheme(scheme);
    EXPECT_EQ(recorder.take(), once(newer));
}

TEST_F(RememberedStyleTests, SetSchemeFollowsSystem) {
    makeSystemDark();
    domain->setSchemeFollowsSystem(true);
    EXPECT_EQ(recorder.take(), once(dark));
    domain->setSchemeFollowsSystem(false); // light, which has no style of its own
    EXPECT_EQ(recorder.take(), once(main));
}

TEST_F(RememberedStyleTests, SetParentStyle) {
    const auto child = addChildStyle(main, "child");
    scheme->addStyle(child);
    label->setCustomZelStyleIdentifier("child");
    recorder.take();
    for (int round = 0; round < 3; ++round) {
        main->updateStyleWithChanges(nullptr);
        EXPECT_EQ(recorder.take(), once(child)) << round;
    }
    child->setParentStyle(card);
    main->updateStyleWithChanges(nullptr);
    EXPECT_EQ(recorder.take(), StyleCalls{});
    card->updateStyleWithChanges(nullptr);
    EXPECT_EQ(recorder.take(), once(child));
}

TEST_F(RememberedStyleTests, TheEndOfAParentStyleAndANewOneAtItsAddress) {
    auto middle = addChildStyle(main, "middle");
    const auto child = addChildStyle(middle, "child");
    scheme->addStyle(child);
    label->setCustomZelStyleIdentifier("child");
    for (int round = 0; round < 3; ++round) {
        main->updateStyleWithChanges(nullptr);
    }
    recorder.take();
    scheme->removeStyle(middle);
    middle.reset();
    for (int i = 0; i < 20; ++i) { // often at the ended one's address
        const auto stranger = addChildStyle(main, "stranger");
        main->updateStyleWithChanges(nullptr);
        EXPECT_EQ(recorder.take(), StyleCalls{}) << i;
        stranger->updateStyleWithChanges(nullptr);
        EXPECT_EQ(recorder.take(), StyleCalls{}) << i;
        scheme->removeStyle(stranger);
    }
}

TEST_F(RememberedStyleTests, TheEndOfAStyleAndANewOneAtItsAddress) {
    label->setCustomZelStyleIdentifier("card");
    recorder.take();
    for (int i = 0; i < 20; ++i) {
        scheme->removeStyle(card);
        card.reset();
        EXPECT_EQ(called(), once(main)) << i;
        card = addStyle(scheme, "card");
        EXPECT_EQ(called(), once(card)) << i;
    }
}

TEST_F(RememberedStyleTests, ALookUpThatMakesTheScheme) {
    label->setCustomZelStyleSchemeIdentifier("sepia"); // made by the look-up, and empty
    EXPECT_EQ(recorder.take(), StyleCalls{});
    const auto sepia = addStyle(domain->schemeForIdentifier("sepia"), "main");
    EXPECT_EQ(called(), once(sepia));
}

TEST_F(RememberedStyleTests, AnObjectThatIsAskedForItsParent) {
    const auto first = makeStyled();
    const auto second = makeStyled();
    first->setCustomZelStyleIdentifier("card");
    const auto asked = makeStyled(first);
    domain->registerChangeHandler(recorder.handler("asked"), asked);
    EXPECT_EQ(recorder.take(), (StyleCalls{{"asked", card, 0}}));
    asked->parent = second; // nobody is notified, and nothing was remembered
    EXPECT_EQ(called(), (StyleCalls{{"asked", main, 1}}));
    asked->parent = panel;
    panel->setCustomZelStyleSchemeIdentifier("dark");
    EXPECT_EQ(recorder.take(), (StyleCalls{{"label", dark, 1}, {"asked", dark, 1}}));
}

TEST_F(RememberedStyleTests, AReset) {
    ZelStyleDomain::domainForIdentifier("_reset");
    EXPECT_EQ(ZelStyle::forStyleable(label), nullptr);
    const auto fresh = addStyle(ZelStyleDomain::defaultDomain()->defaultScheme(), "main");
    EXPECT_EQ(ZelStyle::forStyleable(label), fresh);
    EXPECT_EQ(domain->styleFor(label), main); // of the domain that was removed
}

} // namespace
} // namespace zeltest
