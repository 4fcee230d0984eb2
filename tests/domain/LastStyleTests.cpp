// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Recorder.h"

namespace zeltest {
namespace {

using namespace zel;

class LastStyleTests : public StylingTests {
protected:
    const std::shared_ptr<ZelStyleDomain> domain = ZelStyleDomain::defaultDomain();
    const std::shared_ptr<ZelStyle> plain = addStyle(domain->defaultScheme(), "main");
    const std::shared_ptr<ZelStyle> dark = addStyle(domain->darkScheme(), "main");
    Recorder recorder;
    const std::shared_ptr<Styled> owner = makeStyled();

    void notifyAll() { domain->notifyForStyleChangeOf(nullptr, {}); }
};

TEST_F(LastStyleTests, ItIsStoredAfterTheCall) {
    std::vector<ZelStyleToken> seen;
    const auto look = [&](const auto&, const auto&, auto) {
        seen.push_back(owner->lastZelStyle());
    };
    domain->registerChangeHandler(look, owner);
    domain->setCurrentScheme(domain->darkScheme());
    EXPECT_EQ(seen, (std::vector<ZelStyleToken>{nullptr, plain->token()}));
    EXPECT_EQ(owner->lastZelStyle(), dark->token());
}

TEST_F(LastStyleTests, ItGoesByIdentityNotByValues) {
    const auto twin = alloc<ZelStyle>()->initWithIdentifier("main", domain->defaultScheme());
    domain->registerChangeHandler(recorder.handler("owner"), owner);
    recorder.take();
    domain->lightScheme()->addStyle(twin);
    domain->setCurrentScheme(domain->lightScheme());
    EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", twin, 1}}));
}

TEST_F(LastStyleTests, OneServesBothKindsOfListener) {
    owner->onStyleChange = recorder.objectHandler("as object");
    domain->registerChangeHandler(owner);
    domain->registerChangeHandler(recorder.handler("as owner"), owner);
    recorder.take();
    domain->setCurrentScheme(domain->darkScheme());
    EXPECT_EQ(recorder.takeNames(), (Names{"as owner"}));
    domain->unregisterChangeHandlersWithOwner(owner);
    domain->setCurrentScheme(domain->defaultScheme());
    EXPECT_EQ(recorder.takeNames(), (Names{"as object"}));
}

TEST_F(LastStyleTests, OneServesEveryDomain) {
    const auto other = ZelStyleDomain::domainForIdentifier("editor");
    const auto otherMain = addStyle(other->defaultScheme(), "main");
    domain->registerChangeHandler(recorder.handler("default"), owner);
    other->registerChangeHandler(recorder.handler("editor"), owner);
    EXPECT_EQ(recorder.take(), (StyleCalls{{"default", plain, 0}, {"editor", otherMain, 0}}));
    notifyAll(); // the default domain's style was not the last to be delivered
    EXPECT_EQ(recorder.take(), (StyleCalls{{"default", plain, 1}}));
    notifyAll();
    EXPECT_EQ(recorder.take(), StyleCalls{});
    other->notifyForStyleChangeOf(nullptr, {});
    EXPECT_EQ(recorder.take(), (StyleCalls{{"editor", otherMain, 1}}));
}

TEST_F(LastStyleTests, ADeliveryFollowsTheCallRule) {
    const auto child = addChildStyle(plain, "child");
    owner->onStyleChange = recorder.objectHandler("object");
    domain->registerChangeHandler(owner);
    domain->defaultScheme()->setStylesByIdentifier({});
    const auto applyIsCalled = [&](const std::shared_ptr<ZelStyle>& style,
                                   const std::shared_ptr<ZelStyle>& last,
                                   const ZelStyleDelivery& delivery) {
        domain->setCurrentScheme(domain->darkScheme());
        domain->lightScheme()->setStylesByIdentifier(style ? ZelStyleScheme::Styles{{"main", style}}
                                                           : ZelStyleScheme::Styles{});
        domain->setCurrentScheme(domain->lightScheme()); // whose main style applies to the owner
        owner->setLastZelStyle(last);
        recorder.take();
        domain->notifyForStyleChangeOf(nullptr, delivery);
        EXPECT_EQ(owner->lastZelStyle(), ZelStyleToken(style));
        return !recorder.take().empty();
    };
    EXPECT_TRUE(applyIsCalled(plain, plain, {.force = true}));
    EXPECT_TRUE(applyIsCalled(nullptr, nullptr, {.force = true}));
    EXPECT_TRUE(applyIsCalled(plain, plain, {.force = true, .forStyleOnly = plain}));
    EXPECT_TRUE(applyIsCalled(child, child, {.force = true, .forStyleOnly = plain}));
    EXPECT_FALSE(applyIsCalled(plain, plain, {.force = true, .forStyleOnly = child}));
    EXPECT_TRUE(applyIsCalled(plain, child, {.force = true, .forStyleOnly = child}));
    EXPECT_FALSE(applyIsCalled(nullptr, nullptr, {.force = true, .forStyleOnly = plain}));
    EXPECT_TRUE(applyIsCalled(nullptr, plain, {.force = true, .forStyleOnly = plain}));
    EXPECT_FALSE(applyIsCalled(plain, plain, {}));
    EXPECT_TRUE(applyIsCalled(plain, dark, {}));
    EXPECT_TRUE(applyIsCalled(plain, nullptr, {}));
    EXPECT_FALSE(applyIsCalled(nullptr, nullptr, {}));
    EXPECT_FALSE(applyIsCalled(plain, plain, {.force = false, .forStyleOnly = plain}));
}

} // namespace
} // namespace zeltest
