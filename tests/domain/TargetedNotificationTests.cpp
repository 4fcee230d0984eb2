// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Recorder.h"

namespace zeltest {
namespace {

using namespace zel;

/// A small tree: a window with a panel and a sidebar, the panel with a box, the box with a label.
class TargetedNotificationTests : public StylingTests {
protected:
    const std::shared_ptr<ZelStyleDomain> domain = ZelStyleDomain::defaultDomain();
    const std::shared_ptr<ZelStyle> plain = addStyle(domain->defaultScheme(), "main");
    const std::shared_ptr<ZelStyle> dark = addStyle(domain->darkScheme(), "main");
    const std::shared_ptr<ZelStyle> cover = addStyle(domain->defaultScheme(), "cover");
    Recorder recorder;
    const std::shared_ptr<Styled> window = makeStyled();
    const std::shared_ptr<Styled> panel = makeStyled(window);
    const std::shared_ptr<Styled> sidebar = makeStyled(window);
    const std::shared_ptr<Styled> box = makeStyled(panel);
    const std::shared_ptr<Styled> label = makeStyled(box);
    const std::shared_ptr<Plain> stranger = makePlain();

    static ZelStyleDelivery forced() { return {.force = true}; }

    void listen() {
        domain->registerChangeHandler(recorder.handler("window"), window);
        domain->registerChangeHandler(recorder.handler("panel"), panel);
        domain->registerChangeHandler(recorder.handler("sidebar"), sidebar);
        domain->registerChangeHandler(recorder.handler("box"), box);
        domain->registerChangeHandler(recorder.handler("label"), label);
        domain->registerChangeHandler(recorder.handler("stranger"), stranger);
        recorder.take();
    }
    void listenAsObjects() {
        window->onStyleChange = recorder.objectHandler("window");
        panel->onStyleChange = recorder.objectHandler("panel");
        sidebar->onStyleChange = recorder.objectHandler("sidebar");
        box->onStyleChange = recorder.objectHandler("box");
        label->onStyleChange = recorder.objectHandler("label");
        stranger->onStyleChange = recorder.objectHandler("stranger");
        for (const std::shared_ptr<NSObject>& each :
             std::vector<std::shared_ptr<NSObject>>{window, panel, sidebar, box, label, stranger}) {
            domain->registerChangeHandler(each);
        }
        recorder.take();
    }
};

TEST_F(TargetedNotificationTests, ItReachesTheTargetAndEverythingBelowItNothingElse) {
    listen();
    domain->notifyForStyleChangeOf(panel, forced());
    EXPECT_EQ(recorder.take(),
              (StyleCalls{{"panel", plain, 1}, {"box", plain, 1}, {"label", plain, 1}}));
    domain->notifyForStyleChangeOf(label, forced());
    EXPECT_EQ(recorder.takeNames(), (Names{"label"}));
    domain->notifyForStyleChangeOf(window, forced());
    EXPECT_EQ(recorder.takeNames(), (Names{"window", "panel", "sidebar", "box", "label"}));
}

TEST_F(TargetedNotificationTests, ItReachesHandlerObjectsAlike) {
    listenAsObjects();
    domain->notifyForStyleChangeOf(panel, forced());
    EXPECT_EQ(recorder.take(),
              (StyleCalls{{"panel", plain, 1}, {"box", plain, 1}, {"label", plain, 1}}));
    domain->notifyForStyleChangeOf(sidebar, forced());
    EXPECT_EQ(recorder.takeNames(), (Names{"sidebar"}));
}

TEST_F(TargetedNotificationTests, OwnersComeBeforeHandlerObjects) {
    box->onStyleChange = recorder.objectHandler("box as object");
    domain->registerChangeHandler(box);
    listen();
    domain->notifyForStyleChangeOf(panel, forced());
    EXPECT_EQ(recorder.takeNames(), (Names{"panel", "box", "label", "box as object"}));
}

TEST_F(TargetedNotificationTests, ATargetThatIsNobodysAncestorReachesNobody) {
    listen();
    domain->notifyForStyleChangeOf(makeStyled(panel), forced());
    EXPECT_EQ(recorder.take(), StyleCalls{});
}

TEST_F(TargetedNotificationTests, AListenerThatIsNotStyleableIsNeverCalled) {
    listen();
    stranger->onStyleChange = recorder.objectHandler("stranger as object");
    domain->registerChangeHandler(stranger);
    recorder.take();
    domain->notifyForStyleChangeOf(stranger, forced());
    EXPECT_EQ(recorder.take(), StyleCalls{});
    domain->notifyForStyleChangeOf(window, forced());
    EXPECT_EQ(recorder.takeNames(), (Names{"window", "panel", "sidebar", "box", "label"}));
}

TEST_F(TargetedNotificationTests, ATargetThatIsNotStyleableReachesWhatNamesItAsItsParent) {
    listen();
    panel->parent = stranger;
    domain->notifyForStyleChangeOf(stranger, forced());
    EXPECT_EQ(recorder.takeNames(), (Names{"panel", "box", "label"}));
}

TEST_F(TargetedNotificationTests, ItGoesByTheParentsOfTheMoment) {
    listen();
    box->parent = sidebar;
    domain->notifyForStyleChangeOf(panel, forced());
    EXPECT_EQ(recorder.takeNames(), (Names{"panel"}));
    domain->notifyForStyleChangeOf(sidebar, forced());
    EXPECT_EQ(recorder.takeNames(), (Names{"sidebar", "box", "label"}));
}

TEST_F(TargetedNotificationTests, AListenerOfALongChainIsReached) {
    auto deep = label;
    for (int i = 0; i < 200; ++i) {
        deep = makeStyled(deep);
    }
    domain->registerChangeHandler(recorder.handler("deep"), deep);
    recorder.take();
    domain->notifyForStyleChangeOf(window, forced());
    EXPECT_EQ(recorder.takeNames(), (Names{"deep"}));
}

TEST_F(TargetedNotificationTests, UnforcedItCallsOnlyThoseWhoseStyleChanged) {
    listen();
    box->setLastZelStyle(nullptr);
    sidebar->setLastZelStyle(nullptr);
    domain->notifyForStyleChangeOf(panel, {});
    EXPECT_EQ(recorder.take(), (StyleCalls{{"box", plain, 1}}));
}

TEST_F(TargetedNotificationTests, AFilterNarrowsItAsItDoesOthers) {
    box->setCustomZelStyleIdentifier("cover");
    listen();
    domain->notifyForStyleChangeOf(panel, {.force = true, .forStyleOnly = cover});
    EXPECT_EQ(recorder.take(), (StyleCalls{{"box", cover, 1}, {"label", cover, 1}}));
}

TEST_F(TargetedNotificationTests, AnIdentifierReachesThoseBelowWhoseStyleItChanges) {
    label->setCustomZelStyleIdentifier("main"); // keeps its own
    listen();
    domain->registerChangeHandler(recorder.handler("box again"), box);
    recorder.take();
    panel->setCustomZelStyleIdentifier("cover");
    EXPECT_EQ(recorder.take(), (StyleCalls{{"panel", cover, 1}, {"box", cover, 1}}));
    panel->setCustomZelStyleIdentifier("cover");
    EXPECT_EQ(recorder.take(), StyleCalls{});
    panel->setCustomZelStyleIdentifier(std::nullopt);
    EXPECT_EQ(recorder.take(), (StyleCalls{{"panel", plain, 1}, {"box", plain, 1}}));
}

TEST_F(TargetedNotificationTests, ASchemeIdentifierReachesThoseBelowWhoseStyleItChanges) {
    sidebar->setCustomZelStyleSchemeIdentifier("default");
    listen();
    window->setCustomZelStyleSchemeIdentifier("dark");
    EXPECT_EQ(recorder.take(),
              (StyleCalls{
                  {"window", dark, 1}, {"panel", dark, 1}, {"box", dark, 1}, {"label", dark, 1}}));
}

TEST_F(TargetedNotificationTests, MovingAViewNotifiesNobodyUntilSomebodyAsks) {
    const auto pinned = alloc<NSView>();
    const auto view = alloc<NSView>();
    pinned->setCustomZelStyleSchemeIdentifier("dark");
    domain->registerChangeHandler(recorder.handler("view"), view);
    recorder.take();
    pinned->addSubview(view);
    EXPECT_EQ(recorder.take(), StyleCalls{});
    domain->notifyForStyleChangeOf(view, {});
    EXPECT_EQ(recorder.take(), (StyleCalls{{"view", dark, 1}}));
    view->removeFromSuperview();
    EXPECT_EQ(recorder.take(), StyleCalls{});
    domain->notifyForStyleChangeOf(view, {});
    EXPECT_EQ(recorder.take(), (StyleCalls{{"view", plain, 1}}));
}

TEST_F(TargetedNotificationTests, AViewOfATreeIsReachedThroughItsSuperviews) {
    const auto root = alloc<NSView>();
    const auto middle = alloc<NSView>();
    const auto leaf = alloc<NSView>();
    const auto sibling = alloc<NSView>();
    root->addSubview(middle);
    root->addSubview(sibling);
    middle->addSubview(leaf);
    domain->registerChangeHandler(recorder.handler("leaf"), leaf);
    domain->registerChangeHandler(recorder.handler("sibling"), sibling);
    domain->registerChangeHandler(recorder.handler("root"), root);
    domain->registerChangeHandler(recorder.handler("middle"), middle);
    recorder.take();
    domain->notifyForStyleChangeOf(middle, forced());
    EXPECT_EQ(recorder.takeNames(), (Names{"leaf", "middle"}));
    domain->notifyForStyleChangeOf(root, forced());
    EXPECT_EQ(recorder.takeNames(), (Names{"leaf", "sibling", "root", "middle"}));
}

} // namespace
} // namespace zeltest
