// SPDX-License-Identifier: Apache-2.0
#include "tests/domain/DomainInternals.h"
#include "tests/support/Recorder.h"

namespace zeltest {
namespace {

using namespace zel;

class AssociatedTests : public StylingTests {
protected:
    const std::shared_ptr<ZelStyleDomain> domain = ZelStyleDomain::defaultDomain();
    const std::shared_ptr<ZelStyle> plain = addStyle(domain->defaultScheme(), "main");
    Recorder recorder;
    const std::shared_ptr<Styled> target = makeStyled();
    const std::shared_ptr<Styled> popover = makeStyled();
    const std::shared_ptr<Styled> toolbar = makeStyled();
    const std::shared_ptr<Styled> menu = makeStyled();

    static ZelStyleDelivery forced() { return {.force = true}; }

    AssociatedTests() {
        domain->registerChangeHandler(recorder.handler("menu"), menu);
        domain->registerChangeHandler(recorder.handler("toolbar"), toolbar);
        domain->registerChangeHandler(recorder.handler("popover"), popover);
        domain->registerChangeHandler(recorder.handler("target"), target);
        recorder.take();
    }
    ~AssociatedTests() override {
        for (const auto& each : {target, popover, toolbar, menu}) {
            each->associated.reset(); // circles among them would keep them alive
        }
    }
};

TEST_F(AssociatedTests, AssociatedObjectsComeAfterTheTargetsOwnListenersDepthFirst) {
    const auto child = makeStyled(target);
    child->onStyleChange = recorder.objectHandler("child");
    domain->registerChangeHandler(child);
    target->associated = {{popover, toolbar}};
    popover->associated = {{menu}};
    recorder.take();
    domain->notifyForStyleChangeOf(target, forced());
    EXPECT_EQ(recorder.takeNames(), (Names{"target", "child", "popover", "menu", "toolbar"}));
}

TEST_F(AssociatedTests, OnlyTheTargetsOwnAssociatedObjectsAreVisited) {
    const auto child = makeStyled(target);
    child->associated = {{menu}};
    domain->notifyForStyleChangeOf(target, forced());
    EXPECT_EQ(recorder.takeNames(), (Names{"target"}));
}

TEST_F(AssociatedTests, EventForceAndFilterGoAlong) {
    const auto cover = addStyle(domain->defaultScheme(), "cover");
    target->associated = {{popover, toolbar}};
    popover->setCustomZelStyleIdentifier("cover");
    recorder.take();
    domain->notifyForStyleChangeOf(
        target,
        {.withEvent = static_cast<ZelStyleChangeEvent>(9), .force = true, .forStyleOnly = cover});
    EXPECT_EQ(recorder.take(), (StyleCalls{{"popover", cover, 9}}));
    toolbar->setLastZelStyle(nullptr);
    domain->notifyForStyleChangeOf(target, {});
    EXPECT_EQ(recorder.take(), (StyleCalls{{"toolbar", plain, 1}}));
}

TEST_F(AssociatedTests, AnObjectAssociatedAlongTwoPathsIsVisitedTwice) {
    target->associated = {{popover, toolbar}};
    popover->associated = {{menu}};
    toolbar->associated = {{menu}};
    domain->notifyForStyleChangeOf(target, forced());
    EXPECT_EQ(recorder.takeNames(), (Names{"target", "popover", "menu", "toolbar", "menu"}));
}

TEST_F(AssociatedTests, ACircleEndsWhereItComesBackToItsPath) {
    target->associated = {{popover}};
    popover->associated = {{toolbar}};
    toolbar->associated = {{target, popover, toolbar, menu}};
    domain->notifyForStyleChangeOf(target, forced());
    EXPECT_EQ(recorder.takeNames(), (Names{"target", "popover", "toolbar", "menu"}));
}

TEST_F(AssociatedTests, NoneAnEmptyListAndNilElementsAreHarmless) {
    domain->notifyForStyleChangeOf(target, forced());
    target->associated.emplace();
    domain->notifyForStyleChangeOf(target, forced());
    EXPECT_EQ(recorder.takeNames(), (Names{"target", "target"}));
    target->associated = {{nullptr, menu}};
    domain->notifyForStyleChangeOf(target, forced());
    EXPECT_EQ(recorder.takeNames(), (Names{"target", "menu"}));
}

TEST_F(AssociatedTests, AnAssociatedObjectThatIsNotStyleableLeadsToWhatIsBelowIt) {
    const auto host = makePlain();
    menu->parent = host;
    target->associated = {{host}};
    domain->notifyForStyleChangeOf(target, forced());
    EXPECT_EQ(recorder.takeNames(), (Names{"target", "menu"}));
}

TEST_F(AssociatedTests, TheTargetsDomainServesThemWhicheverTheyName) {
    const auto other = ZelStyleDomain::domainForIdentifier("editor");
    addStyle(other->defaultScheme(), "main");
    menu->domainIdentifier = "editor";
    other->registerChangeHandler(recorder.handler("menu in its own domain"), menu);
    recorder.take();
    target->associated = {{menu}};
    domain->notifyForStyleChangeOf(target, forced());
    EXPECT_EQ(recorder.take(), (StyleCalls{{"target", plain, 1}, {"menu", plain, 1}}));
}

/// Says whether the styling lock was free when it was asked for its associated objects.
class LockProbe : public Styled {
public:
    mutable bool everythingWasFree = false;
    std::optional<std::vector<std::shared_ptr<NSObject>>> associatedZelStyleables() const override {
        requireNoPrivateLock();
        everythingWasFree = stylingLockIsFree();
        return Styled::associatedZelStyleables();
    }
};

TEST_F(AssociatedTests, TheyAreAskedForWithoutAnyTableLocked) {
    const auto probe = alloc<LockProbe>();
    target->associated = {{probe}};
    probe->associated = {{menu}};
    domain->notifyForStyleChangeOf(target, forced());
    EXPECT_TRUE(probe->everythingWasFree);
    EXPECT_EQ(recorder.takeNames(), (Names{"target", "menu"}));
}

} // namespace
} // namespace zeltest
