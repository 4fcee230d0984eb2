// SPDX-License-Identifier: Apache-2.0
// Before anybody asks for the application object, which happens once in a process: each of these
// wants a process of its own, and is skipped in one that has its application. Those that make the
// shared tracker leave one that observes nothing, which spoils the process for other tests.
#include <ZelStyleKit/NSApplication.h>
#include <ZelStyleKit/NSMainQueue.h>
#include <ZelStyleKit/ZelStyleDomain.h>
#include <ZelStyleKit/ZelStyleScheme.h>
#include <ZelStyleKit/ZelStyleSystemAppearance.h>

#include <gtest/gtest.h>

#include <memory>

namespace {

class NoApplication : public testing::Test {
protected:
    void SetUp() override {
        if (zel::NSApp()) {
            GTEST_SKIP() << "this process has its application";
        }
    }
    static void makeSystemDark() {
        zel::NSApplication::sharedApplication()->setEffectiveAppearance(
            zel::NSAppearance::appearanceNamed("NSAppearanceNameDarkAqua"));
    }
    static std::shared_ptr<zel::ZelStyleSystemAppearance> makeTracker() {
        auto tracker = zel::alloc<zel::ZelStyleSystemAppearance>();
        tracker->init();
        return tracker;
    }
    ~NoApplication() override {
        if (const auto application = zel::NSApp()) {
            application->setEffectiveAppearance(
                zel::NSAppearance::appearanceNamed("NSAppearanceNameAqua"));
        }
        zel::NSMainQueue::mainQueue().drain();
    }
};

TEST_F(NoApplication, ATrackerIsLightPostsNothingAndMakesNoApplication) {
    EXPECT_EQ(makeTracker()->currentAppearanceType(), 0U);
    EXPECT_EQ(zel::NSMainQueue::mainQueue().drain(), 0U);
    EXPECT_EQ(zel::NSApp(), nullptr);
}

TEST_F(NoApplication, ATrackerDoesNotObserveAnApplicationThatComesLater) {
    const auto tracker = makeTracker();
    makeSystemDark();
    EXPECT_EQ(tracker->currentAppearanceType(), 0U);
    EXPECT_EQ(zel::NSMainQueue::mainQueue().drain(), 0U);
}

TEST_F(NoApplication, DeterminingOnceTheApplicationIsThereBringsTheTrackerUpToDate) {
    const auto tracker = makeTracker();
    makeSystemDark();
    tracker->determineFromSystemAppearance();
    EXPECT_EQ(tracker->currentAppearanceType(), 1U);
    EXPECT_EQ(zel::NSMainQueue::mainQueue().drain(), 1U);
}

TEST_F(NoApplication, ADomainThatFollowsIsLightUntilTheSharedTrackerLooksAgain) {
    const auto domain = zel::alloc<zel::ZelStyleDomain>()->initWithDomainIdentifier("loose");
    domain->setSchemeFollowsSystem(true);
    EXPECT_EQ(domain->currentScheme(), domain->lightScheme());
    makeSystemDark();
    EXPECT_EQ(zel::NSMainQueue::mainQueue().drain(), 0U);
    EXPECT_EQ(domain->currentScheme(), domain->lightScheme());
    const auto tracker = zel::ZelStyleSystemAppearance::sharedSystemAppearance();
    tracker->determineFromSystemAppearance();
    EXPECT_EQ(zel::NSMainQueue::mainQueue().drain(), 1U);
    EXPECT_EQ(domain->currentScheme(), domain->darkScheme());
    tracker->setCurrentAppearanceType(0);
}

TEST_F(NoApplication, NothingObservesTheSystemBeforeADomainBeginsToFollowIt) {
    makeSystemDark();
    const auto domain = zel::alloc<zel::ZelStyleDomain>()->initWithDomainIdentifier("loose");
    domain->setCurrentScheme(domain->lightScheme());
    domain->setSchemeFollowsSystem(false);
    EXPECT_EQ(zel::NSMainQueue::mainQueue().drain(), 0U) << "no tracker has found it dark";
    domain->setSchemeFollowsSystem(true);
    EXPECT_EQ(domain->currentScheme(), domain->darkScheme());
    EXPECT_EQ(zel::NSMainQueue::mainQueue().drain(), 1U);
    zel::ZelStyleSystemAppearance::sharedSystemAppearance()->setCurrentAppearanceType(0);
}

TEST_F(NoApplication, ATrackerMayEndBeforeTheApplicationComesOrAfterIt) {
    auto early = makeTracker();
    auto late = makeTracker();
    const std::weak_ptr<zel::NSObject> weakEarly = early;
    const std::weak_ptr<zel::NSObject> weakLate = late;
    early.reset();
    EXPECT_TRUE(weakEarly.expired());
    makeSystemDark();
    late.reset();
    EXPECT_TRUE(weakLate.expired());
}

} // namespace
