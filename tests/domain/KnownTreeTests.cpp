// SPDX-License-Identifier: Apache-2.0
#include "styleable/StyleableTree.h"
#include "tests/domain/DomainInternals.h"
#include "tests/support/Recorder.h"

namespace zeltest {
namespace {

using namespace zel;

/// A window of views, whose links the library knows: a panel with a box and a label in it, and a
/// sidebar beside the panel.
class KnownTreeTests : public StylingTests {
protected:
    const std::shared_ptr<ZelStyleDomain> domain = ZelStyleDomain::defaultDomain();
    const std::shared_ptr<ZelStyle> plain = addStyle(domain->defaultScheme(), "main");
    const std::shared_ptr<ZelStyle> dark = addStyle(domain->darkScheme(), "main");
    Recorder recorder;
    const std::shared_ptr<NSView> window = alloc<NSView>();
    const std::shared_ptr<NSView> panel = alloc<NSView>();
    const std::shared_ptr<NSView> box = alloc<NSView>();
    const std::shared_ptr<NSView> label = alloc<NSView>();
    const std::shared_ptr<NSView> sidebar = alloc<NSView>();

    KnownTreeTests() {
        window->addSubview(panel);
        panel->addSubview(box);
        box->addSubview(label);
        window->addSubview(sidebar);
    }

    void listen(const std::shared_ptr<NSObject>& owner, const std::string& name,
                std::function<void()> then = nullptr) {
        domain->registerChangeHandler(recorder.handler(name,
                                                       [this, then = std::move(then)] {
                                                           if (then && armed) {
                                                               then();
                                                           }
                                                       }),
                                      owner);
        recorder.take();
    }
    Names forcedBelow(const std::shared_ptr<NSObject>& target) {
        armed = true;
        domain->notifyForStyleChangeOf(target, {.force = true});
        armed = false;
        return recorder.takeNames();
    }

    bool armed = false; // whether handlers do what they were given to do
};

TEST_F(KnownTreeTests, ATargetsListenersAreServedInOrderOfRegistrationNotOfTheTree) {
    listen(label, "label");
    listen(sidebar, "sidebar");
    listen(box, "box");
    listen(panel, "panel");
    EXPECT_EQ(forcedBelow(panel), (Names{"label", "box", "panel"}));
    EXPECT_EQ(forcedBelow(window), (Names{"label", "sidebar", "box", "panel"}));
    EXPECT_EQ(forcedBelow(sidebar), (Names{"sidebar"}));
}

TEST_F(KnownTreeTests, ListenersThatHaveToBeAskedStandInOrderAmongThoseThatAreFound) {
    const auto asked = makeStyled(box);
    const auto elsewhere = makeStyled(sidebar);
    listen(label, "label");
    listen(asked, "asked");
    listen(elsewhere, "elsewhere");
    listen(box, "box");
    listen(makePlain(), "plain");
    EXPECT_EQ(forcedBelow(panel), (Names{"label", "asked", "box"}));
    EXPECT_EQ(forcedBelow(asked), (Names{"asked"}));
}

TEST_F(KnownTreeTests, AListenerMovedOutOfTheSubtreeMeanwhileIsNotCalled) {
    listen(panel, "panel", [this] { sidebar->addSubview(box); });
    listen(box, "box");
    listen(label, "label");
    EXPECT_EQ(forcedBelow(panel), (Names{"panel"}));
}

TEST_F(KnownTreeTests, AListenerMovedIntoTheSubtreeMeanwhileIsCalledWhereItIsStillToCome) {
    listen(panel, "panel", [this] { box->addSubview(sidebar); });
    listen(sidebar, "sidebar");
    listen(box, "box");
    EXPECT_EQ(forcedBelow(panel), (Names{"panel", "sidebar", "box"}));
}

TEST_F(KnownTreeTests, AListenerMovedByAnotherListenersEndIsNotCalled) {
    struct Mover : Styled {
        std::shared_ptr<NSView> moved;
        ~Mover() override {
            if (moved) {
                moved->removeFromSuperview();
            }
        }
    };
    auto mover = alloc<Mover>();
    mover->parent = panel;
    mover->moved = box;
    listen(mover, "mover", [&mover] { mover.reset(); });
    listen(box, "box");
    EXPECT_EQ(forcedBelow(panel), (Names{"mover"}));
}

TEST_F(KnownTreeTests, AListenerThatIsUnregisteredWhenItIsAskedIsNotCalled) {
    struct Leaver : Styled {
        ZelStyleDomain* domain = nullptr;
        std::shared_ptr<NSObject> parentZelStyleable() const override {
            if (domain) {
                domain->unregisterChangeHandlersWithOwner(
                    std::const_pointer_cast<NSObject>(shared_from_this()));
            }
            return parent;
        }
    };
    const auto leaver = alloc<Leaver>();
    leaver->parent = panel;
    listen(leaver, "leaver");
    listen(box, "box");
    leaver->domain = domain.get();
    EXPECT_EQ(forcedBelow(panel), (Names{"box"}));
    listen(leaver, "leaver");
    EXPECT_EQ(forcedBelow(nullptr), (Names{"box"}));
}

TEST_F(KnownTreeTests, AMoveGivesEverythingBelowTheIdentifiersOfTheNewPlace) {
    sidebar->setCustomZelStyleSchemeIdentifier("dark");
    EXPECT_EQ(domain->styleFor(label), plain);
    sidebar->addSubview(box);
    EXPECT_EQ(domain->styleFor(label), dark);
    box->removeFromSuperview();
    EXPECT_EQ(domain->styleFor(label), plain);
}

TEST_F(KnownTreeTests, AnEndedSuperviewNoLongerCounts) {
    auto pane = alloc<NSView>();
    pane->setCustomZelStyleSchemeIdentifier("dark");
    pane->addSubview(box);
    listen(label, "label");
    EXPECT_EQ(domain->styleFor(label), dark);
    pane.reset();
    EXPECT_EQ(box->superview(), nullptr);
    EXPECT_EQ(domain->styleFor(label), plain);
    EXPECT_EQ(forcedBelow(box), (Names{"label"}));
}

TEST_F(KnownTreeTests, AStyleThatEndsMidWalkMayTakeAListenerToComeWithIt) {
    auto first = alloc<NSView>();
    auto second = alloc<NSView>();
    auto ending = addStyle(domain->defaultScheme(), "x");
    first->setCustomZelStyleIdentifier("x");
    second->setCustomZelStyleIdentifier("x");
    listen(first, "first", [&] {
        if (ending) {
            domain->defaultScheme()->removeStyle(ending);
            ending.reset();
        }
    });
    listen(second, "second");
    ending->addStyleUpdateObserver([kept = second](const auto&, const auto&, bool) {}, first,
                                   false);
    second.reset(); // the observer holds it now
    const Names called = forcedBelow(nullptr);
    EXPECT_EQ(called.front(), "first");
    EXPECT_EQ(forcedBelow(nullptr), (Names{"first"}));
}

/// A node that an integration would bring.
class Companion : public NSObject, public ZelStyleable {
public:
    ZelStyleableNode node{*this};
    std::weak_ptr<NSObject> parent;
    mutable int parentRequests = 0; // how often somebody asked for the parent

    void setParent(const std::shared_ptr<Companion>& to) {
        parent = to;
        node.setParent(to ? &to->node : nullptr);
    }
    const ZelStyleable* asZelStyleable() const noexcept override { return this; }
    const ZelStyleableNode* zelStyleableNode() const noexcept override { return &node; }
    std::optional<std::string> domainIdentifierOfZelStyleable() const override {
        return std::nullopt;
    }
    std::shared_ptr<NSObject> parentZelStyleable() const override {
        ++parentRequests;
        return parent.lock();
    }
};

TEST_F(KnownTreeTests, AnIntegrationsNodesAreFoundAsViewsAre) {
    const auto top = alloc<Companion>();
    const auto middle = alloc<Companion>();
    const auto bottom = alloc<Companion>();
    middle->setParent(top);
    bottom->setParent(middle);
    listen(bottom, "bottom");
    listen(top, "top");
    EXPECT_EQ(forcedBelow(middle), (Names{"bottom"}));
    middle->setCustomZelStyleSchemeIdentifier("dark");
    EXPECT_EQ(recorder.take(), (StyleCalls{{"bottom", dark, 1}}));
    bottom->setParent(top);
    EXPECT_EQ(forcedBelow(middle), Names{});
    EXPECT_EQ(domain->styleFor(bottom), plain);
}

TEST_F(KnownTreeTests, ANodeInTheMiddleThatEndsLeavesThoseBelowAsRoots) {
    const auto top = alloc<Companion>();
    auto middle = alloc<Companion>();
    const auto bottom = alloc<Companion>();
    top->setCustomZelStyleSchemeIdentifier("dark");
    middle->setParent(top);
    bottom->setParent(middle);
    listen(bottom, "bottom");
    EXPECT_EQ(domain->styleFor(bottom), dark);
    middle.reset();
    EXPECT_EQ(domain->styleFor(bottom), plain);
    EXPECT_EQ(forcedBelow(top), Names{});
}

TEST_F(KnownTreeTests, ANodeThatLeavesIsBoundNoLongerByThoseAboveIt) {
    const auto top = alloc<Companion>();
    const auto leaf = alloc<Companion>();
    top->setCustomZelStyleSchemeIdentifier("dark");
    leaf->setParent(top);
    listen(leaf, "leaf");
    EXPECT_EQ(domain->styleFor(leaf), dark);
    leaf->parent.reset();
    leaf->node.leave();
    EXPECT_EQ(domain->styleFor(leaf), plain);
    domain->notifyForStyleChangeOf(nullptr, {});
    EXPECT_EQ(recorder.take(), (StyleCalls{{"leaf", plain, 1}}));
}

TEST_F(KnownTreeTests, AnObjectWithANodeIsNotAskedForItsParentEvenWhereLinksChangeMeanwhile) {
    const auto top = alloc<Companion>();
    const auto middle = alloc<Companion>();
    const auto bottom = alloc<Companion>();
    const auto elsewhere = alloc<Companion>();
    middle->setParent(top);
    bottom->setParent(middle);
    listen(top, "top", [&] { elsewhere->setParent(top); });
    listen(middle, "middle");
    listen(bottom, "bottom");
    listen(sidebar, "sidebar");
    listen(elsewhere, "elsewhere");
    EXPECT_EQ(forcedBelow(top), (Names{"top", "middle", "bottom", "elsewhere"}));
    EXPECT_EQ(middle->parentRequests + bottom->parentRequests + elsewhere->parentRequests, 0)
        << "the answer is its own thread's, the notification may be another's";
    EXPECT_EQ(forcedBelow(alloc<NSObject>()), Names{});
}

TEST_F(KnownTreeTests, SettingANodesParentAgainInvalidatesNothing) {
    listen(box, "box");
    const auto counted = [&](const auto& change) {
        const std::uint64_t before = bindingChanges.now();
        change();
        return bindingChanges.now() - before;
    };
    EXPECT_GT(counted([&] { sidebar->addSubview(box); }), 0U);
    const auto top = alloc<Companion>();
    const auto middle = alloc<Companion>();
    const auto bottom = alloc<Companion>();
    bottom->setParent(middle);
    EXPECT_EQ(counted([&] { middle->setParent(top); }), 1U);
    EXPECT_EQ(counted([&] { middle->setParent(top); }), 0U);
    EXPECT_EQ(counted([&] { middle->setParent(nullptr); }), 1U);
}

TEST_F(KnownTreeTests, BuildingATreeInvalidatesNothingElsewhere) {
    listen(label, "label");
    const std::uint64_t before = bindingChanges.now();
    const auto parent = alloc<NSView>();
    for (int i = 0; i < 10; ++i) {
        const auto child = alloc<NSView>();
        child->setCustomZelStyleIdentifier("x");
        parent->addSubview(child);
    }
    EXPECT_EQ(bindingChanges.now(), before);
}

/// An object whose links are known, and which counts how often it is asked all the same.
class Linked : public Styled {
public:
    ZelStyleableNode node{*this};
    const ZelStyleableNode* zelStyleableNode() const noexcept override { return &node; }
};

TEST_F(KnownTreeTests, NobodyIsAskedForAParentWhereTheLinksAreKnown) {
    const auto root = alloc<Linked>();
    const auto inside = alloc<Linked>();
    const auto outside = alloc<Linked>();
    inside->parent = root;
    inside->node.setParent(&root->node);
    domain->registerChangeHandler(recorder.handler("outside"), outside);
    domain->registerChangeHandler(recorder.handler("inside"), inside);
    recorder.take();
    inside->parentRequests = outside->parentRequests = 0;
    domain->notifyForStyleChangeOf(root, {.force = true});
    EXPECT_EQ(recorder.takeNames(), Names{"inside"});
    EXPECT_EQ(inside->parentRequests + outside->parentRequests, 0);
}

TEST_F(KnownTreeTests, ANotificationLeavesNothingOfWhatItFound) {
    listen(panel, "panel", [&] { // one within another, the first time
        armed = false;
        domain->notifyForStyleChangeOf(window, {.force = true});
    });
    listen(label, "label");
    EXPECT_EQ(forcedBelow(window), (Names{"panel", "panel", "label", "label"}));
    EXPECT_EQ(leftByWalks(*domain), 0U);
}

} // namespace
} // namespace zeltest
