// SPDX-License-Identifier: Apache-2.0
#include "tests/domain/DomainInternals.h"
#include "tests/support/AtEnd.h"
#include "tests/support/Recorder.h"

namespace zeltest {
namespace {

using namespace zel;

class DomainEndTests : public StylingTests {
protected:
    Recorder recorder;
    const std::shared_ptr<Plain> owner = makePlain();
    std::shared_ptr<ZelStyle> light; // of the domain made last
    std::shared_ptr<ZelStyle> dark;

    /// A domain that follows the dark system; the owner's handler records under its identifier, and
    /// does what it was given to do when the domain ends.
    std::shared_ptr<ZelStyleDomain> followInTheDark(const std::string& identifier,
                                                    std::function<void()> then = nullptr) {
        makeSystemDark();
        auto domain = ZelStyleDomain::domainForIdentifier(identifier);
        light = addStyle(domain->lightScheme(), "main");
        dark = addStyle(domain->darkScheme(), "main");
        domain->setSchemeFollowsSystem(true);
        domain->registerChangeHandler(recorder.handler(identifier,
                                                       [this, then = std::move(then)] {
                                                           if (then &&
                                                               recorder.calls.back().event == 1) {
                                                               then();
                                                           }
                                                       }),
                                      owner);
        recorder.take();
        return domain;
    }
    static void reset() { ZelStyleDomain::domainForIdentifier("_reset"); }
};

TEST_F(DomainEndTests, ADomainThatFollowedInTheDarkEndsByGoingToLight) {
    const auto object = makePlain();
    object->onStyleChange = recorder.objectHandler("object");
    followInTheDark("editor")->registerChangeHandler(object);
    recorder.take();
    reset();
    EXPECT_EQ(recorder.take(), (StyleCalls{{"editor", light, 1}, {"object", light, 1}}));
}

TEST_F(DomainEndTests, WeakReferencesToAnEndingDomainReadNil) {
    std::weak_ptr<ZelStyleDomain> weak;
    int calls = 0;
    weak = followInTheDark("editor", [&] {
        ++calls;
        EXPECT_TRUE(weak.expired());
        EXPECT_EQ(light->domain(), nullptr);
        EXPECT_EQ(light->scheme()->domain(), nullptr);
    });
    EXPECT_FALSE(weak.expired());
    reset();
    EXPECT_EQ(calls, 1);
}

TEST_F(DomainEndTests, ADomainThatDidNotFollowEndsInSilence) {
    const auto scheme = followInTheDark("editor")->darkScheme();
    auto domain = ZelStyleDomain::domainForIdentifier("editor");
    domain->setSchemeFollowsSystem(false);
    domain->setCurrentScheme(scheme);
    domain.reset();
    recorder.take();
    owner->setLastZelStyle(nullptr);
    reset();
    EXPECT_EQ(recorder.take(), StyleCalls{});
}

TEST_F(DomainEndTests, AnEndedDomainHearsNoMoreOfTheSystem) {
    followInTheDark("editor");
    reset();
    recorder.take();
    makeSystemLight();
    makeSystemDark();
    EXPECT_EQ(recorder.take(), StyleCalls{});
}

TEST_F(DomainEndTests, AResetEndsDomainsInTheOrderInWhichTheyWereMade) {
    followInTheDark("zebra");
    followInTheDark("ant");
    followInTheDark("monkey");
    reset();
    EXPECT_EQ(recorder.takeNames(), (Names{"zebra", "ant", "monkey"}));
}

TEST_F(DomainEndTests, ADomainThatSomebodyHoldsEndsWhenItIsLetGo) {
    followInTheDark("zebra");
    auto held = followInTheDark("ant");
    followInTheDark("monkey");
    reset();
    EXPECT_EQ(recorder.takeNames(), (Names{"zebra", "monkey"}));
    EXPECT_TRUE(held->schemeFollowsSystem());
    held.reset();
    EXPECT_EQ(recorder.takeNames(), (Names{"ant"}));
}

TEST_F(DomainEndTests, WhatHandlersOfEndingDomainsMakeStays) {
    std::shared_ptr<ZelStyleDomain> born;
    std::shared_ptr<ZelStyleDomain> successor;
    followInTheDark("editor", [&] {
        born = ZelStyleDomain::domainForIdentifier("born");
        successor = ZelStyleDomain::domainForIdentifier("editor");
    });
    reset();
    ASSERT_NE(born, nullptr);
    EXPECT_EQ(ZelStyleDomain::domainForIdentifier("born"), born);
    EXPECT_EQ(ZelStyleDomain::domainForIdentifier("editor"), successor);
    EXPECT_EQ(successor->domainIdentifier(), "editor");
}

TEST_F(DomainEndTests, AHandlerOfAnEndingDomainStillFindsTheDomainsBehindIt) {
    std::weak_ptr<ZelStyleDomain> later;
    std::shared_ptr<ZelStyleDomain> found;
    followInTheDark("first", [&] {
        found = ZelStyleDomain::domainForIdentifier("second");
        EXPECT_EQ(found, later.lock());
    });
    later = ZelStyleDomain::domainForIdentifier("second");
    reset();
    ASSERT_NE(found, nullptr);
    EXPECT_NE(ZelStyleDomain::domainForIdentifier("second"), found);
}

TEST_F(DomainEndTests, AHandlerOfAnEndingDomainMayResetAsWell) {
    followInTheDark("first", [&] { reset(); });
    followInTheDark("second");
    const auto domain = ZelStyleDomain::domainForIdentifier("_reset");
    EXPECT_EQ(recorder.takeNames(), (Names{"first", "second"}));
    EXPECT_EQ(ZelStyleDomain::domainForIdentifier("second")->mainStyle(), nullptr);
    EXPECT_EQ(domain->domainIdentifier(), "_reset");
}

TEST_F(DomainEndTests, AnEndedDomainLetsGoOfItsHandlersThoughTheirOwnersLive) {
    auto captured = std::make_shared<int>();
    const std::weak_ptr<int> watched = captured;
    ZelStyleDomain::domainForIdentifier("editor")->registerChangeHandler(
        [kept = std::move(captured)](const auto&, const auto&, auto) {}, owner);
    EXPECT_FALSE(watched.expired());
    reset();
    EXPECT_TRUE(watched.expired());
}

TEST_F(DomainEndTests, ARegistrationsOwnCallMayTakeTheDomainsLastReferenceAway) {
    auto domain = ZelStyleDomain::domainForIdentifier("editor");
    const std::weak_ptr<ZelStyleDomain> weak = domain;
    const auto main = addStyle(domain->defaultScheme(), "main");
    ZelStyleDomain* const borrowed = domain.get();
    borrowed->registerChangeHandler(recorder.handler("owner",
                                                     [&] {
                                                         domain.reset();
                                                         reset();
                                                     }),
                                    owner);
    EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", main, 0}}));
    EXPECT_TRUE(weak.expired());
    EXPECT_EQ(owner->lastZelStyle(), main->token());
}

TEST_F(DomainEndTests, AWalkGoesOnWhereAHandlerTakesTheDomainsLastReferenceAway) {
    auto domain = ZelStyleDomain::domainForIdentifier("editor");
    const std::weak_ptr<ZelStyleDomain> weak = domain;
    const auto dark2 = addStyle(domain->darkScheme(), "main");
    int calls = 0;
    domain->registerChangeHandler(recorder.handler("owner",
                                                   [&] {
                                                       if (++calls == 2) {
                                                           domain.reset();
                                                           reset();
                                                       }
                                                   }),
                                  owner);
    const auto second = makePlain();
    domain->registerChangeHandler(recorder.handler("second"), second);
    const auto object = makePlain();
    object->onStyleChange = recorder.objectHandler("object");
    domain->registerChangeHandler(object);
    recorder.take();
    ZelStyleDomain* const borrowed = domain.get();
    borrowed->setCurrentScheme(borrowed->darkScheme());
    EXPECT_EQ(recorder.take(),
              (StyleCalls{{"owner", dark2, 1}, {"second", dark2, 1}, {"object", dark2, 1}}));
    EXPECT_TRUE(weak.expired());
}

TEST_F(DomainEndTests, ASwitchGoesOnWhereTheStyleThatItLetsGoTakesTheLastReferenceAway) {
    auto domain = ZelStyleDomain::domainForIdentifier("editor");
    const std::weak_ptr<ZelStyleDomain> weak = domain;
    auto former = addStyle(domain->defaultScheme(), "main");
    const auto next = addStyle(domain->darkScheme(), "main");
    domain->registerChangeHandler(recorder.handler("owner"), owner);
    former->addStyleUpdateObserver([atEnd = std::make_shared<AtEnd>([&] {
                                        domain.reset();
                                        reset();
                                    })](auto&&...) {},
                                   owner, false);
    ASSERT_EQ(domain->mainStyle(), former);
    domain->defaultScheme()->removeStyle(former);
    former.reset();
    recorder.take();
    ZelStyleDomain* const borrowed = domain.get();
    borrowed->setCurrentScheme(borrowed->darkScheme());
    EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", next, 1}}));
    EXPECT_TRUE(weak.expired());
}

TEST_F(DomainEndTests, AnExceptionOfAHandlerThatAnEndingDomainCallsGoesNowhere) {
    const std::weak_ptr<ZelStyleDomain> weak =
        followInTheDark("editor", [] { throw std::runtime_error("a handler's"); });
    EXPECT_NO_THROW(reset());
    EXPECT_EQ(recorder.take(), (StyleCalls{{"editor", light, 1}}));
    EXPECT_TRUE(weak.expired());
}

} // namespace
} // namespace zeltest
