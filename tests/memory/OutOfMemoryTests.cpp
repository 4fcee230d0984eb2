// SPDX-License-Identifier: Apache-2.0
#include "style/ZelStyleInternals.h"
#include "tests/domain/DomainInternals.h"
#include "tests/memory/FailingMemory.h"
#include "tests/support/Sanitized.h"
#include "tests/support/Styling.h"

#include <array>

namespace zeltest {
namespace {

using namespace zel;

/// Listeners that count their calls, which takes no memory.
class OutOfMemoryTests : public StylingTests {
protected:
    const std::shared_ptr<ZelStyleDomain> domain = ZelStyleDomain::defaultDomain();
    const std::shared_ptr<ZelStyle> main = addStyle(domain->defaultScheme(), "main");

    static ZelStyleChangeHandler counter(int& calls) {
        return [&calls](const auto&, const auto&, auto) { ++calls; };
    }
    static std::size_t owners(ZelStyleDomain& ofDomain) { return ownerCount(ofDomain); }
};

// In a process of its own: the first use of the providers in it.
TEST(OutOfMemoryAtFirstUseTests, TheBuiltInProvidersAreLoadedAfreshAfterAFailure) {
    if (zeltest::underThreadSanitizer) {
        GTEST_SKIP()
            << "under the thread sanitizer std::call_once waits for ever after an exception";
    }
    const std::size_t failures =
        runShortOfMemory([] { (void)ZelStyleInternals::_defaultValueProviders(); }, [] {});
    EXPECT_GE(failures, 5U);
    const auto& providers = ZelStyleInternals::_defaultValueProviders();
    ASSERT_EQ(providers.size(), 2U);
    EXPECT_EQ(providers[0]->identifier(), "main");
    EXPECT_EQ(providers[1]->identifier(), "base");
}

TEST_F(OutOfMemoryTests, ARegistrationThatFailsLeavesNothingBehind) {
    const auto owner = makeStyled();
    int calls = 0;
    (void)domain->styleFor(owner); // found once, so that only the registration asks for memory
    const std::size_t failures =
        runShortOfMemory([&] { domain->registerChangeHandler(counter(calls), owner); },
                         [&] {
                             EXPECT_EQ(owners(*domain), 0U);
                             EXPECT_EQ(calls, 0);
                         });
    EXPECT_GE(failures, 3U);
    EXPECT_EQ(owners(*domain), 1U);
    EXPECT_EQ(calls, 1);
    domain->notifyForStyleChangeOf(owner, {.force = true});
    EXPECT_EQ(calls, 2);
}

// The handler that is given up may be the last to hold a listener, which then ends.
TEST_F(OutOfMemoryTests, ASecondHandlerThatFailsEndsWithWhatItHolds) {
    const auto owner = makeStyled();
    int calls = 0;
    domain->registerChangeHandler(counter(calls), owner);
    (void)domain->styleFor(owner);
    const std::size_t failures = runShortOfMemory(
        [&] {
            ZelStyleChangeHandler handler;
            {
                auto held = makeStyled();
                domain->registerChangeHandler(counter(calls), held);
                handler = [held = std::move(held)](const auto&, const auto&, auto) {};
            }
            domain->registerChangeHandler(std::move(handler), owner);
        },
        [&] { EXPECT_EQ(owners(*domain), 1U); });
    EXPECT_GE(failures, 3U);
    EXPECT_EQ(owners(*domain), 2U);
}

// What following needs is made before anything is changed.
TEST_F(OutOfMemoryTests, ADomainThatCantFollowDoesSoWhenItIsAskedAgain) {
    const auto following = ZelStyleDomain::domainForIdentifier("following");
    const std::size_t failures =
        runShortOfMemory([&] { following->setSchemeFollowsSystem(true); },
                         [&] { EXPECT_FALSE(following->schemeFollowsSystem()); });
    EXPECT_GE(failures, 1U);
    EXPECT_EQ(following->currentScheme(), following->lightScheme());
}

TEST_F(OutOfMemoryTests, ASecondDomainsRegistrationThatFailsLeavesTheFirstOnes) {
    const auto owner = makeStyled();
    const auto second = ZelStyleDomain::domainForIdentifier("second");
    addStyle(second->defaultScheme(), "main");
    (void)second->styleFor(owner);
    int firstCalls = 0;
    int secondCalls = 0;
    domain->registerChangeHandler(counter(firstCalls), owner);
    const std::size_t failures =
        runShortOfMemory([&] { second->registerChangeHandler(counter(secondCalls), owner); },
                         [&] { EXPECT_EQ(owners(*second), 0U); });
    EXPECT_GE(failures, 2U);
    domain->notifyForStyleChangeOf(owner, {.force = true});
    EXPECT_EQ(firstCalls, 2);
    EXPECT_EQ(secondCalls, 1);
    second->notifyForStyleChangeOf(owner, {.force = true});
    EXPECT_EQ(secondCalls, 2);
}

TEST_F(OutOfMemoryTests, ANotificationOfATargetThatFailsCallsNobodyAndTheNextCallsEachOnce) {
    const auto root = alloc<NSView>();
    const auto child = alloc<NSView>();
    root->addSubview(child);
    int rootCalls = 0;
    int childCalls = 0;
    root->registerStyleableChangeHandler(counter(rootCalls));
    child->registerStyleableChangeHandler(counter(childCalls));
    rootCalls = childCalls = 0;
    const std::size_t failures =
        runShortOfMemory([&] { domain->notifyForStyleChangeOf(root, {.force = true}); },
                         [&] {
                             EXPECT_EQ(rootCalls, 0);
                             EXPECT_EQ(childCalls, 0);
                             EXPECT_EQ(leftByWalks(*domain), 0U);
                         });
    EXPECT_GE(failures, 1U);
    EXPECT_EQ(rootCalls, 1);
    EXPECT_EQ(childCalls, 1);
}

TEST_F(OutOfMemoryTests, AnUpdateReachesItsFamilyWithoutMemory) {
    domain->setCurrentScheme(domain->defaultScheme());
    const auto top = addChildStyle(main, "top");
    const auto aside = addChildStyle(main, "aside");
    std::array<int, 3> calls{};
    std::array<std::shared_ptr<NSView>, 3> views{};
    for (std::size_t i = 0; i < views.size(); ++i) {
        views[i] = alloc<NSView>();
        views[i]->setCustomZelStyleIdentifier(i == 1 ? "aside" : "top");
        views[i]->registerStyleableChangeHandler(counter(calls[i]));
    }
    top->updateStyleWithChanges(nullptr); // has the memory for updates made
    calls = {};
    bool hasFailed = false;
    {
        const MemoryRunsOut shortage(0);
        for (int round = 0; round < 3; ++round) {
            top->updateStyleWithChanges(nullptr);
        }
        hasFailed = shortage.hasFailed();
    }
    EXPECT_TRUE(hasFailed) << "no order of the listeners was attempted";
    EXPECT_EQ(calls, (std::array<int, 3>{3, 0, 3}));
    top->updateStyleWithChanges(nullptr);
    EXPECT_EQ(calls, (std::array<int, 3>{4, 0, 4}));
}

TEST_F(OutOfMemoryTests, AValueThatNoMemoryIsThereForIsNotSetAndTheCallerIsTold) {
    auto& defaults = NSUserDefaults::standardUserDefaults();
    const std::optional<NSUserDefaultsValue> value(std::string("a text that is kept elsewhere"));
    bool isSet = true;
    {
        const MemoryRunsOut shortage(0);
        isSet = defaults.setObject(value, "key");
    }
    EXPECT_FALSE(isSet);
    EXPECT_EQ(defaults.objectForKey("key"), std::nullopt);
    EXPECT_TRUE(defaults.setObject(value, "key"));
    EXPECT_EQ(defaults.objectForKey("key"), value);
}

TEST_F(OutOfMemoryTests, ATreeEndsWholeWithoutMemory) {
    auto root = alloc<NSView>();
    std::array<std::weak_ptr<NSView>, 7> all;
    all[0] = root;
    for (std::size_t i = 1; i < all.size(); ++i) { // each has two below it
        const auto view = alloc<NSView>();
        all[(i - 1) / 2].lock()->addSubview(view);
        all[i] = view;
    }
    {
        const MemoryRunsOut shortage(0);
        root.reset();
    }
    for (const auto& each : all) {
        EXPECT_TRUE(each.expired());
    }
}

TEST_F(OutOfMemoryTests, AWriteThatFailsLeavesTheEffectiveValueThatOfTheStylesOwn) {
    const auto style = alloc<ZelStyle>();
    style->init();
    std::size_t failures = 0;
    for (int i = 0; i < 40; ++i) { // so many that the merged values grow several times
        const std::string key = "a key of the host's own, number " + std::to_string(i);
        const std::optional<ZelAttributeValue> value(NSNumber::numberWithLong(i));
        (void)style->effectiveValueForAttribute("blueColor"); // merged, before each write
        failures += runShortOfMemory([&] { style->setValue(value, key); },
                                     [&] {
                                         const auto own = style->valueForAttribute(key);
                                         EXPECT_TRUE(!own || own == value);
                                         EXPECT_EQ(style->effectiveValueForAttribute(key), own);
                                     });
        EXPECT_EQ(style->effectiveValueForAttribute(key), value);
    }
    EXPECT_GE(failures, 50U);
    EXPECT_EQ(style->effectiveValues()->size(), 40U);
}

} // namespace
} // namespace zeltest
