// SPDX-License-Identifier: Apache-2.0
#include "tests/domain/DomainInternals.h"
#include "tests/memory/FailingMemory.h"
#include "tests/support/Styling.h"

#include <algorithm>

namespace zeltest {
namespace {

using namespace zel;

/// Styles, schemes, domains and modes. Callbacks count, which takes no memory.
class StyleMemoryTests : public StylingTests {
protected:
    const std::shared_ptr<ZelStyleDomain> domain = ZelStyleDomain::defaultDomain();
    const std::shared_ptr<ZelStyleScheme> scheme = domain->defaultScheme();
    const std::shared_ptr<ZelStyle> main = addStyle(scheme, "main");
    const std::shared_ptr<NSObject> owner = makePlain();
    int calls = 0;
};

TEST_F(StyleMemoryTests, AnObserverThatNoMemoryIsThereForIsNotAdded) {
    const ZelStyle::UpdateObserver observer = [this](auto&&...) { ++calls; };
    const std::size_t failures =
        runShortOfMemory([&] { main->addStyleUpdateObserver(observer, owner, true); },
                         [&] {
                             main->updateStyleWithChanges(nullptr);
                             EXPECT_EQ(calls, 0);
                         });
    EXPECT_GE(failures, 3U);
    EXPECT_EQ(calls, 1) << "the initial call";
    runElsewhere([this] { main->updateStyleWithChanges(nullptr); });
    EXPECT_EQ(calls, 2);
}

TEST_F(StyleMemoryTests, AnInheritedStyleThatNoMemoryIsThereForLeavesNothingBehind) {
    std::shared_ptr<ZelStyle> child;
    const ZelStyle::InheritedChanges changes = [this](auto&&...) { ++calls; };
    const std::size_t failures =
        runShortOfMemory([&] { child = main->inheritedStyleWithChanges(changes, "card", scheme); },
                         [&] {
                             EXPECT_EQ(scheme->styleForIdentifier("card"), nullptr);
                             calls = 0;
                             main->updateStyleWithChanges(nullptr);
                             EXPECT_EQ(calls, 0);
                         });
    EXPECT_GE(failures, 5U);
    EXPECT_EQ(scheme->styleForIdentifier("card"), child);
    calls = 0;
    runElsewhere([this] { main->updateStyleWithChanges(nullptr); });
    EXPECT_EQ(calls, 1);
}

TEST_F(StyleMemoryTests, ASchemeThatNoMemoryIsThereForIsNotThere) {
    std::shared_ptr<ZelStyleScheme> sepia;
    const std::size_t failures =
        runShortOfMemory([&] { sepia = domain->schemeForIdentifier("sepia"); },
                         [&] {
                             EXPECT_FALSE(hasScheme(*domain, "sepia"));
                             EXPECT_EQ(domain->defaultScheme(), scheme);
                         });
    EXPECT_GE(failures, 2U);
    EXPECT_EQ(domain->schemeForIdentifier("sepia"), sepia);
    EXPECT_EQ(sepia->domain(), domain);
}

TEST_F(StyleMemoryTests, AStyleThatASchemeHasNoMemoryForIsNotInIt) {
    const auto card = addChildStyle(main, "card");
    card->setIdentifier("another card, of a long name");
    const std::size_t failures =
        runShortOfMemory([&] { scheme->addStyle(card); },
                         [&] {
                             EXPECT_EQ(scheme->stylesByIdentifier().size(), 2U);
                             EXPECT_EQ(scheme->styleForIdentifier("main"), main);
                         });
    EXPECT_GE(failures, 2U);
    EXPECT_EQ(scheme->styleForIdentifier("another card, of a long name"), card);
}

TEST_F(StyleMemoryTests, ADomainThatNoMemoryIsThereForIsMadeAfresh) {
    std::shared_ptr<ZelStyleDomain> editor;
    const std::size_t failures =
        runShortOfMemory([&] { editor = ZelStyleDomain::domainForIdentifier("editor"); },
                         [&] { EXPECT_EQ(ZelStyleDomain::defaultDomain(), domain); });
    EXPECT_GE(failures, 5U);
    EXPECT_EQ(ZelStyleDomain::domainForIdentifier("editor"), editor);
    EXPECT_EQ(editor->domainIdentifier(), "editor");
    EXPECT_EQ(editor->currentScheme(), editor->defaultScheme());
}

TEST_F(StyleMemoryTests, FollowingThatNoMemoryIsThereForHasNotBegun) {
    addStyle(domain->darkScheme(), "main");
    (void)domain->lightScheme();
    const std::size_t failures = runShortOfMemory([&] { domain->setSchemeFollowsSystem(true); },
                                                  [&] {
                                                      EXPECT_FALSE(domain->schemeFollowsSystem());
                                                      EXPECT_EQ(domain->currentScheme(), scheme);
                                                  });
    EXPECT_GE(failures, 2U);
    EXPECT_TRUE(domain->schemeFollowsSystem());
    makeSystemDark();
    EXPECT_EQ(domain->currentScheme(), domain->darkScheme());
}

// The only setup of the process.
TEST_F(StyleMemoryTests, ASetupThatNoMemoryIsThereForIsDoneByTheNextOne) {
    const std::size_t failures =
        runShortOfMemory([] { ZelStyleDomain::setupStyles(); },
                         [&] { EXPECT_FALSE(domain->schemeFollowsSystem()); });
    EXPECT_GE(failures, 10U);
    EXPECT_TRUE(domain->schemeFollowsSystem());
    const auto light = domain->lightScheme()->styleForIdentifier("main");
    const auto dark = domain->darkScheme()->styleForIdentifier("main");
    EXPECT_EQ(scheme->styleForIdentifier("main"), light);
    EXPECT_EQ(light->effectiveValues()->size(), 55U);
    EXPECT_EQ(dark->effectiveValues()->size(), 55U);
    makeSystemDark();
    EXPECT_EQ(domain->mainStyle(), dark);
}

TEST_F(StyleMemoryTests, AModeThatNoMemoryIsThereForLeavesTheOthersInOrder) {
    const auto manager = alloc<ZelStyleManager>();
    manager->init();
    const auto makeMode = [](std::string_view identifier, std::uint64_t rank) {
        return alloc<ZelStyleManagerMode>()->initWithIdentifier(identifier, rank, "a name");
    };
    const auto first = makeMode("the first mode, which does nothing", 1);
    const auto last = makeMode("the last mode, which does nothing", 9);
    const auto mode = makeMode("the mode between, which does nothing", 5);
    manager->addMode(last);
    manager->addMode(first);
    const std::size_t failures = runShortOfMemory(
        [&] {
            if (std::ranges::find(manager->modes(), mode) == manager->modes().end()) {
                manager->addMode(mode);
            }
        },
        [&] {
            auto others = manager->modes();
            std::erase(others, mode); // in the list, where only the choice had no memory
            EXPECT_EQ(others, (ZelStyleManager::Modes{first, last}));
            EXPECT_EQ(manager->activeMode(), nullptr);
        });
    EXPECT_GE(failures, 1U);
    EXPECT_EQ(manager->modes(), (ZelStyleManager::Modes{first, mode, last}));
    EXPECT_EQ(mode->manager(), manager);
}

} // namespace
} // namespace zeltest
