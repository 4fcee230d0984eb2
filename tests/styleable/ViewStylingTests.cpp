// SPDX-License-Identifier: Apache-2.0
#include "tests/styleable/StyleableFixture.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace zeltest;
using zel::NSView;
using zel::NSViewController;
using Associated = std::optional<std::vector<std::shared_ptr<zel::NSObject>>>;

/// Superview > view > subview, and parent > controller > child, the view being the controller's.
class ViewStyling : public StyleableTests {
protected:
    void SetUp() override {
        superview->addSubview(view);
        view->addSubview(subview);
        parent->addChildViewController(controller);
        controller->addChildViewController(child);
        listen(superview, "superview");
        listen(view, "view");
        listen(subview, "subview");
        listen(parent, "parent");
        listen(controller, "controller");
        listen(child, "child");
        recorder.take();
    }
    void listen(const std::shared_ptr<zel::NSObject>& to, const std::string& name) {
        to->registerStyleableChangeHandler(recorder.handler(name));
    }

    const std::shared_ptr<NSView> superview = zel::alloc<NSView>();
    const std::shared_ptr<NSView> view = zel::alloc<NSView>();
    const std::shared_ptr<NSView> subview = zel::alloc<NSView>();
    const std::shared_ptr<NSViewController> parent = zel::alloc<NSViewController>();
    const std::shared_ptr<NSViewController> controller = zel::alloc<NSViewController>();
    const std::shared_ptr<NSViewController> child = zel::alloc<NSViewController>();
};

TEST_F(ViewStyling, ViewsAndControllersBelongToTheDefaultDomain) {
    EXPECT_EQ(view->domainIdentifierOfZelStyleable(), "default");
    EXPECT_EQ(controller->domainIdentifierOfZelStyleable(), "default");
    EXPECT_EQ(zel::ZelStyleDomain::domainForStyleable(view), domain);
    EXPECT_EQ(zel::ZelStyleDomain::domainForStyleable(controller), domain);
}

TEST_F(ViewStyling, AViewsParentIsItsSuperview) {
    EXPECT_EQ(subview->parentZelStyleable(), view);
    EXPECT_EQ(view->parentZelStyleable(), superview);
    EXPECT_EQ(superview->parentZelStyleable(), nullptr);
    EXPECT_EQ(view->associatedZelStyleables(), std::nullopt);
}

TEST_F(ViewStyling, AViewsIdentifierReachesItsSubviewsAndNotItsSuperview) {
    view->setCustomZelStyleIdentifier("accent");
    EXPECT_EQ(recorder.take(), (StyleCalls{{"view", accent, 1}, {"subview", accent, 1}}));
    view->setCustomZelStyleSchemeIdentifier("dark");
    EXPECT_EQ(recorder.take(), (StyleCalls{{"view", main, 1}, {"subview", main, 1}}));
}

TEST_F(ViewStyling, ASubviewsOwnIdentifierStandsAgainstItsSuperviews) {
    subview->setCustomZelStyleIdentifier("main");
    recorder.take();
    view->setCustomZelStyleIdentifier("accent");
    EXPECT_EQ(recorder.takeNames(), Names{"view"});
    EXPECT_EQ(domain->styleFor(subview), main);
}

TEST_F(ViewStyling, AControllersParentIsItsParentController) {
    EXPECT_EQ(child->parentZelStyleable(), controller);
    EXPECT_EQ(controller->parentZelStyleable(), parent);
    EXPECT_EQ(parent->parentZelStyleable(), nullptr);
}

TEST_F(ViewStyling, AControllersIdentifierReachesItsChildrenAndNotItsParent) {
    controller->setCustomZelStyleIdentifier("accent");
    EXPECT_EQ(recorder.take(), (StyleCalls{{"controller", accent, 1}, {"child", accent, 1}}));
}

TEST_F(ViewStyling, AControllersViewIsNotifiedAndStyledAlongItsOwnSuperviews) {
    controller->setView(view);
    view->setLastZelStyle(nullptr); // so that a notification reaches it
    subview->setLastZelStyle(nullptr);
    superview->setLastZelStyle(nullptr);
    controller->setCustomZelStyleIdentifier("accent");
    EXPECT_EQ(recorder.take(), (StyleCalls{{"controller", accent, 1},
                                           {"child", accent, 1},
                                           {"view", main, 1},
                                           {"subview", main, 1}}));
    EXPECT_EQ(domain->styleFor(view), main);
}

TEST_F(ViewStyling, ALoadedViewIsAControllersOnlyAssociatedObject) {
    controller->setView(view);
    EXPECT_EQ(controller->associatedZelStyleables(), Associated({view}));
    controller->setView(nullptr);
    EXPECT_EQ(controller->associatedZelStyleables(), std::nullopt);
}

TEST_F(ViewStyling, NotifyingAControllerDoesNotLoadItsView) {
    class Loading : public NSViewController {
    public:
        int loads = 0;
        void loadView() override {
            ++loads;
            NSViewController::loadView();
        }
    };
    const auto loading = zel::alloc<Loading>();
    listen(loading, "loading");
    EXPECT_EQ(loading->associatedZelStyleables(), std::nullopt);
    loading->setCustomZelStyleIdentifier("accent");
    loading->setCustomZelStyleSchemeIdentifier("dark");
    domain->notifyForStyleChangeOf(loading, {.force = true});
    EXPECT_FALSE(loading->isViewLoaded());
    EXPECT_EQ(loading->loads, 0);
    (void)loading->view();
    EXPECT_EQ(loading->loads, 1);
}

TEST_F(ViewStyling, MovingAViewTellsNobodyUntilTheHostAsksForIt) {
    superview->setCustomZelStyleIdentifier("accent");
    recorder.take();
    const auto elsewhere = zel::alloc<NSView>();
    elsewhere->addSubview(view);
    EXPECT_TRUE(recorder.take().empty());
    EXPECT_EQ(domain->styleFor(view), main);
    domain->notifyForStyleChangeOf(view, {});
    EXPECT_EQ(recorder.take(), (StyleCalls{{"view", main, 1}, {"subview", main, 1}}));
}

} // namespace
