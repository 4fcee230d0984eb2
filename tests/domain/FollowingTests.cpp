// SPDX-License-Identifier: Apache-2.0
#include "tests/domain/DomainInternals.h"
#include "tests/support/Recorder.h"

namespace zeltest {
namespace {

using namespace zel;

class FollowingTests : public StylingTests {
protected:
    const std::shared_ptr<ZelStyleDomain> domain = ZelStyleDomain::domainForIdentifier("editor");
    const std::shared_ptr<ZelStyle> plain = addStyle(domain->defaultScheme(), "main");
    const std::shared_ptr<ZelStyle> light = addStyle(domain->lightScheme(), "main");
    const std::shared_ptr<ZelStyle> dark = addStyle(domain->darkScheme(), "main");
    Recorder recorder;
    const std::shared_ptr<Plain> owner = makePlain();

    void listen() {
        domain->registerChangeHandler(recorder.handler("owner"), owner);
        recorder.take();
    }
    static void setAppearanceType(std::uint64_t type) {
        ZelStyleSystemAppearance::sharedSystemAppearance()->setCurrentAppearanceType(type);
        NSMainQueue::mainQueue().drain();
    }
};

TEST_F(FollowingTests, StartingToFollowADarkSystemMakesDarkCurrentAtOnce) {
    makeSystemDark();
    listen();
    domain->setSchemeFollowsSystem(true);
    EXPECT_TRUE(domain->schemeFollowsSystem());
    EXPECT_EQ(domain->currentScheme(), domain->darkScheme());
    EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", dark, 1}}));
}

TEST_F(FollowingTests, ADomainThatDoesNotFollowIgnoresTheSystem) {
    listen();
    makeSystemDark();
    EXPECT_EQ(domain->currentScheme(), domain->defaultScheme());
    EXPECT_EQ(recorder.take(), StyleCalls{});
}

TEST_F(FollowingTests, TheSchemeFollowsTheSystemWhenTheMainQueueRuns) {
    domain->setSchemeFollowsSystem(true);
    listen();
    makeSystem("NSAppearanceNameDarkAqua");
    EXPECT_EQ(domain->currentScheme(), domain->lightScheme());
    EXPECT_EQ(recorder.take(), StyleCalls{});
    NSMainQueue::mainQueue().drain();
    EXPECT_EQ(domain->currentScheme(), domain->darkScheme());
    EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", dark, 1}}));
    makeSystemLight();
    EXPECT_EQ(domain->currentScheme(), domain->lightScheme());
    EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", light, 1}}));
}

TEST_F(FollowingTests, OnlyTypeOneIsDarkAndEveryOtherTypeIsLight) {
    domain->setSchemeFollowsSystem(true);
    setAppearanceType(1);
    EXPECT_EQ(domain->currentScheme(), domain->darkScheme());
    setAppearanceType(0);
    EXPECT_EQ(domain->currentScheme(), domain->lightScheme());
    for (const std::uint64_t type :
         {std::uint64_t{2}, std::uint64_t{0x100000001}, std::uint64_t{0xFFFFFFFFFFFFFFFF}}) {
        setAppearanceType(1);
        EXPECT_EQ(domain->currentScheme(), domain->darkScheme());
        setAppearanceType(type);
        EXPECT_EQ(domain->currentScheme(), domain->lightScheme()) << type;
    }
}

TEST_F(FollowingTests, ANotificationFromAnySenderMakesTheDomainLookAgain) {
    domain->setSchemeFollowsSystem(true);
    ZelStyleSystemAppearance::sharedSystemAppearance()->setCurrentAppearanceType(1);
    NSNotificationCenter::defaultCenter().postNotificationName("ZelStyleSystemAppearanceChanged",
                                                               makePlain());
    EXPECT_EQ(domain->currentScheme(), domain->darkScheme());
    domain->setCurrentScheme(domain->lightScheme());
    NSNotificationCenter::defaultCenter().postNotificationName("ZelStyleSystemAppearanceChanged",
                                                               nullptr);
    EXPECT_EQ(domain->currentScheme(), domain->darkScheme());
}

TEST_F(FollowingTests, FollowingWhileFollowingChangesNothingAndCallsNobody) {
    domain->setSchemeFollowsSystem(true);
    domain->setCurrentScheme(domain->darkScheme()); // by hand, against the light system
    listen();
    owner->setLastZelStyle(nullptr);
    domain->setSchemeFollowsSystem(true);
    EXPECT_EQ(domain->currentScheme(), domain->darkScheme());
    EXPECT_EQ(recorder.take(), StyleCalls{});
}

TEST_F(FollowingTests, NotFollowingWhileNotFollowingChangesNothingAndCallsNobody) {
    domain->setCurrentScheme(domain->darkScheme());
    listen();
    owner->setLastZelStyle(nullptr);
    domain->setSchemeFollowsSystem(false);
    EXPECT_EQ(domain->currentScheme(), domain->darkScheme());
    EXPECT_EQ(recorder.take(), StyleCalls{});
}

TEST_F(FollowingTests, TurningFollowingOffWhileDarkGoesToLightAndNotifiesOnce) {
    makeSystemDark();
    domain->setSchemeFollowsSystem(true);
    listen();
    domain->setSchemeFollowsSystem(false);
    EXPECT_FALSE(domain->schemeFollowsSystem());
    EXPECT_EQ(domain->currentScheme(), domain->lightScheme());
    EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", light, 1}}));
    makeSystemLight();
    makeSystemDark();
    EXPECT_EQ(domain->currentScheme(), domain->lightScheme());
    EXPECT_EQ(recorder.take(), StyleCalls{});
}

TEST_F(FollowingTests, TurningFollowingOffGoesToLightEvenFromTheDefaultScheme) {
    domain->setSchemeFollowsSystem(true);
    domain->setCurrentScheme(domain->defaultScheme());
    listen();
    domain->setSchemeFollowsSystem(false);
    EXPECT_EQ(domain->currentScheme(), domain->lightScheme());
    EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", light, 1}}));
}

TEST_F(FollowingTests, TurningFollowingOffWhileLightCallsNobody) {
    domain->setSchemeFollowsSystem(true);
    listen();
    owner->setLastZelStyle(nullptr);
    domain->setSchemeFollowsSystem(false);
    EXPECT_EQ(recorder.take(), StyleCalls{});
}

TEST_F(FollowingTests, AHandlerOfTheSwitchMayEndTheFollowing) {
    domain->setSchemeFollowsSystem(true);
    domain->registerChangeHandler(recorder.handler("owner",
                                                   [this] {
                                                       if (recorder.calls.size() == 2) {
                                                           domain->setSchemeFollowsSystem(false);
                                                       }
                                                   }),
                                  owner);
    makeSystemDark();
    EXPECT_FALSE(domain->schemeFollowsSystem());
    EXPECT_EQ(domain->currentScheme(), domain->lightScheme());
}

/// A domain that has neither scheme yet.
class FollowingSchemeTests : public StylingTests {};

TEST_F(FollowingSchemeTests, FollowingMakesTheLightSchemeAndTheDarkOneWhenItIsDark) {
    const auto makes = [](const std::shared_ptr<ZelStyleDomain>& domain) {
        return std::pair(hasScheme(*domain, "light"), hasScheme(*domain, "dark"));
    };
    const auto domain = alloc<ZelStyleDomain>()->initWithDomainIdentifier("loose");
    EXPECT_EQ(makes(domain), std::pair(false, false));
    domain->setSchemeFollowsSystem(true);
    EXPECT_EQ(makes(domain), std::pair(true, false));
    domain->setSchemeFollowsSystem(false);
    EXPECT_EQ(makes(domain), std::pair(true, false));
    makeSystemDark();
    domain->setSchemeFollowsSystem(true);
    EXPECT_EQ(makes(domain), std::pair(true, true));
}

} // namespace
} // namespace zeltest
