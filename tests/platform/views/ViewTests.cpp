// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/NSView.h>
#include <ZelStyleKit/ZelStyle.h>
#include <ZelStyleKit/ZelStyleDomain.h>
#include <ZelStyleKit/ZelStyleScheme.h>

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using zel::NSView;
using Views = std::vector<std::shared_ptr<NSView>>;

/// A view that writes its name down as it ends, and how many subviews it still has then.
class Named : public NSView {
public:
    std::string name;
    std::string* ended = nullptr;

    ~Named() override {
        if (ended) {
            *ended += name + std::to_string(subviews().size());
        }
    }
};

std::shared_ptr<Named> named(const std::string& name, std::string& ended) {
    auto view = zel::alloc<Named>();
    view->name = name;
    view->ended = &ended;
    return view;
}

class ViewTree : public testing::Test {
protected:
    const std::shared_ptr<NSView> root = zel::alloc<NSView>();
    const std::shared_ptr<NSView> a = zel::alloc<NSView>();
    const std::shared_ptr<NSView> b = zel::alloc<NSView>();
};

TEST_F(ViewTree, ANewViewStandsAlone) {
    EXPECT_EQ(root->superview(), nullptr);
    EXPECT_TRUE(root->subviews().empty());
}

TEST_F(ViewTree, SubviewsStandInTheOrderInWhichTheyWereAdded) {
    root->addSubview(b);
    root->addSubview(a);
    EXPECT_EQ(root->subviews(), (Views{b, a}));
    EXPECT_EQ(a->superview(), root);
    EXPECT_EQ(b->superview(), root);
}

TEST_F(ViewTree, AViewThatIsAddedElsewhereLeavesItsFormerPlace) {
    root->addSubview(a);
    root->addSubview(b);
    b->addSubview(a);
    EXPECT_EQ(root->subviews(), Views{b});
    EXPECT_EQ(b->subviews(), Views{a});
    EXPECT_EQ(a->superview(), b);
}

TEST_F(ViewTree, AViewThatIsAddedAgainMovesToTheEnd) {
    root->addSubview(a);
    root->addSubview(b);
    root->addSubview(a);
    EXPECT_EQ(root->subviews(), (Views{b, a}));
    EXPECT_EQ(a->superview(), root);
}

TEST_F(ViewTree, AReferenceIntoTheListOfSubviewsMayBeMoved) {
    root->addSubview(zel::alloc<NSView>());
    b->addSubview(root->subviews().front());
    EXPECT_TRUE(root->subviews().empty());
    ASSERT_EQ(b->subviews().size(), 1U);
    EXPECT_EQ(b->subviews().front()->superview(), b);
}

TEST_F(ViewTree, ARemovedViewStandsAlone) {
    root->addSubview(a);
    root->addSubview(b);
    a->removeFromSuperview();
    EXPECT_EQ(root->subviews(), Views{b});
    EXPECT_EQ(a->superview(), nullptr);
    a->removeFromSuperview(); // nothing left to do
    EXPECT_EQ(a->superview(), nullptr);
}

TEST_F(ViewTree, AViewThatOnlyItsSuperviewHoldsEndsWhenItIsRemoved) {
    std::string ended;
    root->addSubview(named("x", ended));
    root->subviews().front()->removeFromSuperview();
    EXPECT_EQ(ended, "x0");
    EXPECT_TRUE(root->subviews().empty());
}

TEST_F(ViewTree, NilIsNotAdded) {
    root->addSubview(nullptr);
    EXPECT_TRUE(root->subviews().empty());
}

TEST_F(ViewTree, AViewCantBePutBelowItselfAndTheTreeStaysAsItWas) {
    root->addSubview(a);
    a->addSubview(b);
    EXPECT_THROW(root->addSubview(root), std::invalid_argument);
    EXPECT_THROW(b->addSubview(root), std::invalid_argument);
    EXPECT_THROW(b->addSubview(a), std::invalid_argument);
    EXPECT_EQ(root->superview(), nullptr);
    EXPECT_EQ(root->subviews(), Views{a});
    EXPECT_EQ(a->subviews(), Views{b});
    EXPECT_TRUE(b->subviews().empty());
    EXPECT_EQ(a->superview(), root);
}

TEST_F(ViewTree, AViewOwnsItsSubviewsAndNotItsSuperview) {
    std::string ended;
    auto top = named("t", ended);
    auto kept = named("k", ended);
    top->addSubview(named("s", ended));
    top->addSubview(kept);
    top.reset();
    EXPECT_EQ(ended, "t2s0");
    EXPECT_EQ(kept->superview(), nullptr);
    kept.reset();
    EXPECT_EQ(ended, "t2s0k0");
}

TEST_F(ViewTree, ATreeEndsFromTheTopASubviewWithAllBelowItBeforeTheNext) {
    std::string ended;
    auto top = named("t", ended);
    for (const char* name : {"a", "b"}) {
        const auto child = named(name, ended);
        for (const char* suffix : {"1", "2"}) {
            child->addSubview(named(std::string(name) + suffix + ":", ended));
        }
        top->addSubview(child);
    }
    top.reset();
    EXPECT_EQ(ended, "t2a2a1:0a2:0b2b1:0b2:0");
}

TEST_F(ViewTree, ATreeThatEndsInsideTheEndOfAnotherLeavesNothingBehind) {
    class Holder : public NSView {
    public:
        std::shared_ptr<NSView> other;
    };
    std::string ended;
    auto top = zel::alloc<NSView>();
    auto holder = zel::alloc<Holder>();
    holder->other = named("o", ended);
    holder->other->addSubview(named("p", ended));
    top->addSubview(holder);
    holder.reset();
    top.reset();
    EXPECT_EQ(ended, "o1p0");
}

TEST_F(ViewTree, ATreeOfAHundredThousandLevelsIsBuiltResolvedAndDestroyed) {
    constexpr int levels = 100'000;
    zel::ZelStyleDomain::domainForIdentifier("_reset");
    const auto domain = zel::ZelStyleDomain::defaultDomain();
    const auto style =
        zel::alloc<zel::ZelStyle>()->initWithIdentifier("main", domain->darkScheme());
    domain->darkScheme()->addStyle(style);

    const auto deepest = zel::alloc<NSView>();
    auto top = deepest;
    for (int level = 1; level < levels; ++level) {
        auto above = zel::alloc<NSView>();
        above->addSubview(top);
        top = std::move(above);
    }
    EXPECT_EQ(domain->styleFor(deepest), nullptr);
    top->setCustomZelStyleSchemeIdentifier("dark");
    EXPECT_EQ(domain->styleFor(deepest), style);
    EXPECT_TRUE(zel::ZelStyleDomain::isEqualOrChildOf(deepest, top));

    const std::weak_ptr<NSView> aboveDeepest = deepest->superview();
    top.reset();
    EXPECT_TRUE(aboveDeepest.expired());
    EXPECT_EQ(deepest->superview(), nullptr);
    EXPECT_EQ(domain->styleFor(deepest), nullptr);
}

} // namespace
