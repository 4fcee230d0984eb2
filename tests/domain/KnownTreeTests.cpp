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

TEST_F(KnownTreeTests, AnObjectWithANodeIsNotAskedForItsParentEvenWhereLinksChangeMeanwhile) {
    const auto top = alloc<Linked>();
    const auto middle = alloc<Linked>();
    const auto bottom = alloc<Linked>();
    const auto elsewhere = alloc<Linked>();
    middle->node.setParent(&top->node);
    bottom->node.setParent(&middle->node);
    listen(top, "top", [&] { elsewhere->node.setParent(&top->node); });
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
    const auto top = alloc<Linked>();
    const auto middle = alloc<Linked>();
    const auto bottom = alloc<Linked>();
    bottom->node.setParent(&middle->node);
    EXPECT_EQ(counted([&] { middle->node.setParent(&top->node); }), 1U);
    EXPECT_EQ(counted([&] { middle->node.setParent(&top->node); }), 0U);
    EXPECT_EQ(counted([&] { middle->node.setParent(nullptr); }), 1U);
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
