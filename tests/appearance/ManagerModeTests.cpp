// SPDX-License-Identifier: Apache-2.0
#include "tests/appearance/ManagerFixture.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>

namespace {

using namespace zeltest;

class ManagerMode : public ManagerTests {};

TEST_F(ManagerMode, ANewModeHasWhatItWasMadeWithAndIsNobodys) {
    const auto mode = makeMode("sepia", 18446744073709551615U, "Sepia");
    EXPECT_EQ(mode->identifier(), "sepia");
    EXPECT_EQ(mode->rank(), 18446744073709551615U);
    EXPECT_EQ(mode->name(), "Sepia");
    EXPECT_EQ(mode->manager(), nullptr);
    EXPECT_FALSE(mode->active());
}

TEST_F(ManagerMode, WhatAModeLacksIsNilAndNotEmpty) {
    const auto mode = makeMode(std::nullopt, 0, std::nullopt);
    EXPECT_EQ(mode->identifier(), std::nullopt);
    EXPECT_EQ(mode->name(), std::nullopt);
    mode->setIdentifier("");
    mode->setName("");
    EXPECT_EQ(mode->identifier(), "");
    EXPECT_EQ(mode->name(), "");
    mode->setIdentifier(std::nullopt);
    mode->setName(std::nullopt);
    EXPECT_EQ(mode->identifier(), std::nullopt);
    EXPECT_EQ(mode->name(), std::nullopt);
}

TEST_F(ManagerMode, TheStandardIdentifiersAreFixed) {
    EXPECT_EQ(zel::ZelStyleManagerModeIdentifierLight, "always-light");
    EXPECT_EQ(zel::ZelStyleManagerModeIdentifierDark, "always-dark");
    EXPECT_EQ(zel::ZelStyleManagerModeIdentifierFollowSystem, "follow-system");
}

TEST_F(ManagerMode, SettingItsFieldsHasNoOtherEffect) {
    addStandardModes();
    const auto mode = manager->modes().front();
    listen();
    mode->setIdentifier("always-dark");
    mode->setName("Zebra");
    mode->setRank(1000);
    EXPECT_EQ(mode->identifier(), "always-dark");
    EXPECT_EQ(mode->name(), "Zebra");
    EXPECT_EQ(mode->rank(), 1000U);
    EXPECT_EQ(manager->modes().front(), mode);
    EXPECT_TRUE(recorder.take().empty());
}

TEST_F(ManagerMode, AModeDoesNotKeepItsManagerAlive) {
    const auto mode = makeMode("sepia", 0);
    auto own = zel::alloc<zel::ZelStyleManager>();
    own->init();
    own->addMode(mode);
    EXPECT_EQ(mode->manager(), own);
    own.reset();
    EXPECT_EQ(mode->manager(), nullptr);
}

TEST_F(ManagerMode, AManagerIsOnlyStoredInAMode) {
    const auto mode = makeMode("always-dark", 0);
    mode->setManager(manager);
    EXPECT_EQ(mode->manager(), manager);
    EXPECT_TRUE(manager->modes().empty());
    mode->setManager(nullptr);
    EXPECT_EQ(mode->manager(), nullptr);
}

TEST_F(ManagerMode, AlwaysLightEndsFollowingAndMakesTheLightSchemeCurrent) {
    makeSystemDark();
    domain->setSchemeFollowsSystem(true);
    ASSERT_TRUE(isDark());
    listen();
    makeMode("always-light", 0)->setActive(true);
    EXPECT_TRUE(isLight());
    EXPECT_FALSE(domain->schemeFollowsSystem());
    EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", light, 1}}));
}

TEST_F(ManagerMode, AlwaysDarkOnADarkSystemPassesByTheLightScheme) {
    makeSystemDark();
    domain->setSchemeFollowsSystem(true);
    listen();
    makeMode("always-dark", 0)->setActive(true);
    EXPECT_TRUE(isDark());
    EXPECT_FALSE(domain->schemeFollowsSystem());
    EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", light, 1}, {"owner", dark, 1}}));
}

TEST_F(ManagerMode, AlwaysDarkWhereNothingIsFollowedIsOneSwitch) {
    listen();
    makeMode("always-dark", 0)->setActive(true);
    EXPECT_TRUE(isDark());
    EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", dark, 1}}));
}

TEST_F(ManagerMode, APinnedModeTakesNoNoticeOfTheSystem) {
    makeMode("always-dark", 0)->setActive(true);
    makeSystemDark();
    makeSystemLight();
    EXPECT_TRUE(isDark());
    makeMode("always-light", 0)->setActive(true);
    makeSystemDark();
    EXPECT_TRUE(isLight());
}

TEST_F(ManagerMode, FollowSystemStartsFollowingAndDoesNothingElse) {
    makeMode("follow-system", 0)->setActive(true);
    EXPECT_TRUE(domain->schemeFollowsSystem());
    EXPECT_TRUE(isLight());
    makeSystemDark();
    EXPECT_TRUE(isDark());
}

TEST_F(ManagerMode, FollowSystemWhileFollowingLeavesASchemeThatWasSetByHand) {
    makeMode("follow-system", 0)->setActive(true);
    domain->setCurrentScheme(domain->darkScheme());
    listen();
    makeMode("follow-system", 0)->setActive(true);
    EXPECT_TRUE(isDark());
    EXPECT_TRUE(recorder.take().empty());
}

TEST_F(ManagerMode, ApplyingAgainChangesNothing) {
    const auto mode = makeMode("always-dark", 0);
    mode->setActive(true);
    listen();
    mode->setActive(true);
    EXPECT_TRUE(recorder.take().empty());
    domain->setCurrentScheme(domain->lightScheme());
    recorder.take();
    mode->setActive(true); // not remembered as active, so that it takes hold again
    EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", dark, 1}}));
}

TEST_F(ManagerMode, AModeIsNeverActiveNotEvenRightAfterItWasApplied) {
    for (const std::string_view identifier : {"always-light", "always-dark", "follow-system"}) {
        const auto mode = makeMode(identifier, 0);
        mode->setActive(true);
        EXPECT_FALSE(mode->active());
        mode->setActive(false);
        EXPECT_FALSE(mode->active());
    }
}

TEST_F(ManagerMode, DeactivatingDoesNothing) {
    listen();
    for (const std::string_view identifier : {"always-light", "always-dark", "follow-system"}) {
        makeMode(identifier, 0)->setActive(false);
    }
    EXPECT_TRUE(recorder.take().empty());
    EXPECT_EQ(domain->currentScheme(), domain->defaultScheme());
    EXPECT_FALSE(domain->schemeFollowsSystem());
}

TEST_F(ManagerMode, AModeOfAnApplicationsOwnHasNoEffect) {
    makeSystemDark();
    listen();
    for (const std::string_view identifier :
         {"sepia", "", "Always-Dark", "always-dark ", "dark", "light"}) {
        makeMode(identifier, 0)->setActive(true);
    }
    makeMode(std::nullopt, 0)->setActive(true);
    EXPECT_TRUE(recorder.take().empty());
    EXPECT_EQ(domain->currentScheme(), domain->defaultScheme());
    EXPECT_FALSE(domain->schemeFollowsSystem());
}

TEST_F(ManagerMode, ModesAreToldByTheirTextsWhateverTheExportedVariablesHold) {
    class Changed {
    public:
        Changed() { zel::ZelStyleManagerModeIdentifierDark = "something else"; }
        ~Changed() { zel::ZelStyleManagerModeIdentifierDark = "always-dark"; }
        Changed(const Changed&) = delete;
        Changed& operator=(const Changed&) = delete;
    };
    const Changed changed;
    makeMode("something else", 0)->setActive(true);
    EXPECT_EQ(domain->currentScheme(), domain->defaultScheme());
    makeMode("always-dark", 0)->setActive(true);
    EXPECT_TRUE(isDark());
}

TEST_F(ManagerMode, AModeWithoutAManagerIsAppliedToTheDefaultDomainToo) {
    const auto other = zel::ZelStyleDomain::domainForIdentifier("other");
    makeMode("always-dark", 0)->setActive(true);
    EXPECT_TRUE(isDark());
    EXPECT_EQ(other->currentScheme(), other->defaultScheme());
}

TEST_F(ManagerMode, AModeIsAppliedToTheDefaultDomainThatThereIsNow) {
    zel::ZelStyleDomain::domainForIdentifier("_reset");
    makeMode("always-dark", 0)->setActive(true);
    const auto now = zel::ZelStyleDomain::defaultDomain();
    EXPECT_NE(now, domain);
    EXPECT_EQ(now->currentScheme(), now->darkScheme());
    EXPECT_FALSE(isDark());
}

TEST_F(ManagerMode, AModeWhoseInitFailsIsNil) {
    class FailingMode : public zel::ZelStyleManagerMode {
        std::shared_ptr<zel::NSObject> init() override { return nullptr; }
    };
    const auto failing = zel::alloc<FailingMode>();
    EXPECT_EQ(failing->initWithIdentifier("sepia", 5, "Sepia"), nullptr);
    EXPECT_EQ(failing->identifier(), std::nullopt);
    EXPECT_EQ(failing->rank(), 0U);
}

} // namespace
