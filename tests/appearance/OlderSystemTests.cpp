// SPDX-License-Identifier: Apache-2.0
#include "tests/appearance/TrackerFixture.h"

#include <ZelStyleKit/NSProcessInfo.h>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace {

using namespace zeltest;

/// A system from before the dark appearance, whose application claims to be dark all the same.
class OlderSystem : public TrackerTests {
protected:
    OlderSystem() {
        makeSystemDark();
        zel::NSProcessInfo::setOperatingSystemVersion({10, 13, 6});
    }
    ~OlderSystem() override { zel::NSProcessInfo::setOperatingSystemVersion({10, 14, 0}); }
};

TEST_F(OlderSystem, ATrackerIsLightAndPostsNothing) {
    const auto tracker = makeTracker();
    EXPECT_EQ(tracker->currentAppearanceType(), 0U);
    makeSystem("NSAppearanceNameAqua");
    makeSystem("NSAppearanceNameDarkAqua");
    tracker->determineFromSystemAppearance();
    EXPECT_EQ(tracker->currentAppearanceType(), 0U);
    drain();
    EXPECT_TRUE(senders.empty());
}

TEST_F(OlderSystem, ATrackerDoesNotObserveTheApplicationNotEvenLater) {
    const auto tracker = makeTracker();
    zel::NSProcessInfo::setOperatingSystemVersion({10, 14, 0});
    makeSystem("NSAppearanceNameAqua");
    makeSystem("NSAppearanceNameDarkAqua");
    EXPECT_EQ(tracker->currentAppearanceType(), 0U);
    tracker->determineFromSystemAppearance();
    EXPECT_EQ(tracker->currentAppearanceType(), 1U);
}

TEST_F(OlderSystem, ACallbackWithTheTrackersContextDeterminesNothing) {
    const auto tracker = makeTracker();
    tracker->setCurrentAppearanceType(1);
    tracker->observeValueForKeyPath("effectiveAppearance", *zel::NSApp(), {}, tracker.get());
    EXPECT_EQ(tracker->currentAppearanceType(), 1U);
}

TEST_F(OlderSystem, ATypeSetByHandIsStoredAndPosted) {
    const auto tracker = makeTracker();
    tracker->setCurrentAppearanceType(1);
    EXPECT_EQ(tracker->currentAppearanceType(), 1U);
    drain();
    EXPECT_EQ(senders, std::vector<std::shared_ptr<zel::NSObject>>{tracker});
}

TEST_F(OlderSystem, DeterminingTakesATypeSetByHandBackAndPosts) {
    const auto tracker = makeTracker();
    tracker->setCurrentAppearanceType(1);
    drain();
    senders.clear();
    tracker->determineFromSystemAppearance();
    EXPECT_EQ(tracker->currentAppearanceType(), 0U);
    drain();
    EXPECT_EQ(senders.size(), 1U);
}

TEST_F(OlderSystem, TheDarkAppearanceBeginsWithTenFourteen) {
    const auto typeOn = [](const zel::NSOperatingSystemVersion& version) {
        zel::NSProcessInfo::setOperatingSystemVersion(version);
        return makeTracker()->currentAppearanceType();
    };
    EXPECT_EQ(typeOn({10, 13, 99}), 0U);
    EXPECT_EQ(typeOn({9, 99, 0}), 0U);
    EXPECT_EQ(typeOn({10, 14, 0}), 1U);
    EXPECT_EQ(typeOn({10, 14, 6}), 1U);
    EXPECT_EQ(typeOn({11, 0, 0}), 1U);
}

TEST_F(OlderSystem, AFollowingDomainIsLight) {
    zel::ZelStyleSystemAppearance::sharedSystemAppearance()->determineFromSystemAppearance();
    drain();
    const auto domain = zel::ZelStyleDomain::domainForIdentifier("following");
    domain->setSchemeFollowsSystem(true);
    EXPECT_EQ(domain->currentScheme(), domain->lightScheme());
}

} // namespace
