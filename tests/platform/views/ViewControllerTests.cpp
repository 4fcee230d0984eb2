// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/NSViewController.h>
#include <ZelStyleKit/ZelStyleDomain.h>

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using zel::NSView;
using zel::NSViewController;
using Controllers = std::vector<std::shared_ptr<NSViewController>>;

/// Counts how often its view is loaded.
class Counting : public NSViewController {
public:
    int loads = 0;
    void loadView() override {
        ++loads;
        NSViewController::loadView();
    }
};

class Named : public NSViewController {
public:
    std::string name;
    std::string* ended = nullptr;

    ~Named() override {
        if (ended) {
            *ended += name + std::to_string(childViewControllers().size());
        }
    }
};

std::shared_ptr<Named> named(const std::string& name, std::string& ended) {
    auto controller = zel::alloc<Named>();
    controller->name = name;
    controller->ended = &ended;
    return controller;
}

class ControllerTree : public testing::Test {
protected:
    const std::shared_ptr<NSViewController> root = zel::alloc<NSViewController>();
    const std::shared_ptr<NSViewController> a = zel::alloc<NSViewController>();
    const std::shared_ptr<NSViewController> b = zel::alloc<NSViewController>();
};

TEST(ControllerView, AViewIsLoadedOnTheFirstRequestAndKept) {
    const auto controller = zel::alloc<Counting>();
    EXPECT_FALSE(controller->isViewLoaded());
    EXPECT_EQ(controller->loads, 0);
    const std::shared_ptr<NSView> view = controller->view();
    EXPECT_NE(view, nullptr);
    EXPECT_TRUE(controller->isViewLoaded());
    EXPECT_EQ(controller->view(), view);
    EXPECT_EQ(controller->loads, 1);
}

TEST(ControllerView, AViewThatIsSetIsNotLoaded) {
    const auto controller = zel::alloc<Counting>();
    const auto view = zel::alloc<NSView>();
    controller->setView(view);
    EXPECT_TRUE(controller->isViewLoaded());
    EXPECT_EQ(controller->view(), view);
    EXPECT_EQ(controller->loads, 0);
}

TEST(ControllerView, AViewThatWasTakenAwayIsLoadedAgain) {
    const auto controller = zel::alloc<Counting>();
    const auto view = controller->view();
    controller->setView(nullptr);
    EXPECT_FALSE(controller->isViewLoaded());
    EXPECT_NE(controller->view(), nullptr);
    EXPECT_EQ(controller->loads, 2);
}

TEST(ControllerView, AControllerMayLoadNoViewAtAll) {
    class Viewless : public NSViewController {
    public:
        void loadView() override {}
    };
    const auto controller = zel::alloc<Viewless>();
    EXPECT_EQ(controller->view(), nullptr);
    EXPECT_FALSE(controller->isViewLoaded());
}

TEST(ControllerView, AControllerOwnsItsView) {
    auto controller = zel::alloc<NSViewController>();
    const std::weak_ptr<NSView> view = controller->view();
    EXPECT_FALSE(view.expired());
    controller.reset();
    EXPECT_TRUE(view.expired());
}

TEST_F(ControllerTree, ChildrenStandInTheOrderInWhichTheyWereAdded) {
    EXPECT_EQ(root->parentViewController(), nullptr);
    root->addChildViewController(b);
    root->addChildViewController(a);
    EXPECT_EQ(root->childViewControllers(), (Controllers{b, a}));
    EXPECT_EQ(a->parentViewController(), root);
}

TEST_F(ControllerTree, AControllerThatIsAddedElsewhereLeavesItsFormerPlace) {
    root->addChildViewController(a);
    root->addChildViewController(b);
    b->addChildViewController(a);
    EXPECT_EQ(root->childViewControllers(), Controllers{b});
    EXPECT_EQ(b->childViewControllers(), Controllers{a});
    EXPECT_EQ(a->parentViewController(), b);
}

TEST_F(ControllerTree, ARemovedControllerStandsAlone) {
    root->addChildViewController(a);
    root->addChildViewController(b);
    a->removeFromParentViewController();
    EXPECT_EQ(root->childViewControllers(), Controllers{b});
    EXPECT_EQ(a->parentViewController(), nullptr);
    a->removeFromParentViewController();
    EXPECT_EQ(a->parentViewController(), nullptr);
}

TEST_F(ControllerTree, AControllerThatOnlyItsParentHoldsEndsWhenItIsRemoved) {
    std::string ended;
    root->addChildViewController(named("x", ended));
    root->childViewControllers().front()->removeFromParentViewController();
    EXPECT_EQ(ended, "x0");
}

TEST_F(ControllerTree, NilIsNotAdded) {
    root->addChildViewController(nullptr);
    EXPECT_TRUE(root->childViewControllers().empty());
}

TEST_F(ControllerTree, AControllerCantBePutBelowItselfAndTheTreeStaysAsItWas) {
    root->addChildViewController(a);
    a->addChildViewController(b);
    EXPECT_THROW(root->addChildViewController(root), std::invalid_argument);
    EXPECT_THROW(b->addChildViewController(root), std::invalid_argument);
    EXPECT_EQ(root->parentViewController(), nullptr);
    EXPECT_EQ(root->childViewControllers(), Controllers{a});
    EXPECT_EQ(a->childViewControllers(), Controllers{b});
    EXPECT_TRUE(b->childViewControllers().empty());
}

TEST_F(ControllerTree, AControllerOwnsItsChildrenAndNotItsParent) {
    std::string ended;
    auto top = named("t", ended);
    auto kept = named("k", ended);
    const auto child = named("c", ended);
    child->addChildViewController(named("d", ended));
    top->addChildViewController(child);
    top->addChildViewController(kept);
    const std::weak_ptr<NSViewController> weak = top;
    top.reset();
    EXPECT_TRUE(weak.expired());
    EXPECT_EQ(ended, "t2");
    EXPECT_EQ(kept->parentViewController(), nullptr);
    EXPECT_EQ(child->childViewControllers().size(), 1U);
}

TEST_F(ControllerTree, ATreeEndsFromTheTopAChildWithAllBelowItBeforeTheNext) {
    std::string ended;
    auto top = named("t", ended);
    for (const char* name : {"a", "b"}) {
        const auto child = named(name, ended);
        child->addChildViewController(named(std::string(name) + ":", ended));
        top->addChildViewController(child);
    }
    top.reset();
    EXPECT_EQ(ended, "t2a1a:0b1b:0");
}

TEST_F(ControllerTree, ATreeOfAHundredThousandLevelsIsBuiltWalkedAndDestroyed) {
    const auto deepest = zel::alloc<NSViewController>();
    auto top = deepest;
    for (int level = 1; level < 100'000; ++level) {
        auto above = zel::alloc<NSViewController>();
        above->addChildViewController(top);
        top = std::move(above);
    }
    EXPECT_TRUE(zel::ZelStyleDomain::isEqualOrChildOf(deepest, top));
    const std::weak_ptr<NSViewController> aboveDeepest = deepest->parentViewController();
    top.reset();
    EXPECT_TRUE(aboveDeepest.expired());
    EXPECT_EQ(deepest->parentViewController(), nullptr);
}

} // namespace
