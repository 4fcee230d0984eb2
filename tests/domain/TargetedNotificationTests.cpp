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

TEST_F(TargetedNotificationTests, OwnersComeBeforeHandlerObjectsOfWhichItReachesTheSame) {
    for (const auto& [name, object] :
         {std::pair("box as object", box), std::pair("sidebar as object", sidebar)}) {
        object->onStyleChange = recorder.objectHandler(name);
        domain->registerChangeHandler(object);
    }
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

} // namespace
} // namespace zeltest
