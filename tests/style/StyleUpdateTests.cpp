// SPDX-License-Identifier: Apache-2.0
#include "tests/style/StyleModel.h"
#include "tests/support/Recorder.h"

namespace zeltest {
namespace {

using namespace zel;

class StyleUpdateTests : public StylingTests {
protected:
    const std::shared_ptr<ZelStyleDomain> domain = ZelStyleDomain::domainForIdentifier("editor");
    const Style main = addStyle(domain->defaultScheme(), "main");
    Names order;

    ZelStyle::UpdateObserver observer(std::string name) {
        return [this, name = std::move(name)](auto&&...) { order.push_back(name); };
    }
    ZelStyleChangeHandler handler(std::string name) {
        return [this, name = std::move(name)](auto&&...) { order.push_back(name); };
    }
    /// A styled object of the domain whose style is the one of that identifier.
    std::shared_ptr<Styled> listen(std::string_view styleIdentifier) {
        auto object = makeStyled();
        object->domainIdentifier = "editor";
        object->setCustomZelStyleIdentifier(styleIdentifier);
        domain->registerChangeHandler(handler(std::string(styleIdentifier)), object);
        order.clear();
        return object;
    }
};

TEST_F(StyleUpdateTests, AnAcceptedUpdateMovesTheCounterByOneAndMergesAfresh) {
    const auto merged = main->effectiveValues();
    main->updateStyleWithChanges([](const Style& style) {
        style->setValue(gray(0.5), "blueColor");
        return true;
    });
    EXPECT_EQ(main->seed(), 1U);
    EXPECT_EQ(main->blueColor(), NSColor::colorWithWhite(0.5, 1));
    EXPECT_NE(main->effectiveValues(), merged);
}

TEST_F(StyleUpdateTests, ACancelledUpdateLeavesCounterCacheAndListenersAlone) {
    const auto object = listen("main");
    main->addStyleUpdateObserver(observer("observer"), object, false);
    const auto merged = main->effectiveValues();
    main->updateStyleWithChanges([](const Style&) { return false; });
    EXPECT_EQ(main->seed(), 0U);
    EXPECT_EQ(main->effectiveValues(), merged);
    EXPECT_EQ(order, Names{});
}

TEST_F(StyleUpdateTests, WhatACancelledUpdateWroteStaysWritten) {
    const auto merged = main->effectiveValues();
    main->updateStyleWithChanges([](const Style& style) {
        style->setValue(gray(0.5), "blueColor");
        return false;
    });
    EXPECT_EQ(main->seed(), 0U);
    EXPECT_EQ(main->blueColor(), NSColor::colorWithWhite(0.5, 1));
    EXPECT_NE(main->effectiveValues(), merged);
}

TEST_F(StyleUpdateTests, AnUpdateWithoutChangesIsAccepted) {
    const auto object = listen("main");
    main->addStyleUpdateObserver(observer("observer"), object, false);
    const auto merged = main->effectiveValues();
    main->updateStyleWithChanges(nullptr);
    EXPECT_EQ(main->seed(), 1U);
    EXPECT_NE(main->effectiveValues(), merged);
    EXPECT_EQ(order, (Names{"observer", "main"})) << "observers before the domain";
}

TEST_F(StyleUpdateTests, ObserversFindCounterAndValuesMoved) {
    const auto owner = makePlain();
    (void)main->effectiveValues();
    std::uint64_t seed = 0;
    Value blue;
    main->addStyleUpdateObserver(
        [&](const std::shared_ptr<NSObject>&, const Style& style, bool) {
            seed = style->seed();
            blue = style->effectiveValueForAttribute("blueColor");
        },
        owner, false);
    main->updateStyleWithChanges([](const Style& style) {
        style->setValue(gray(0.5), "blueColor");
        return true;
    });
    EXPECT_EQ(seed, 1U);
    EXPECT_EQ(blue, gray(0.5));
}

TEST_F(StyleUpdateTests, AnUpdateForcesDeliveryToListenersOfThatStyleWithEventOne) {
    const auto quiet = addStyle(domain->defaultScheme(), "quiet");
    Recorder recorder;
    const auto onMain = makeStyled();
    const auto onQuiet = makeStyled();
    onQuiet->setCustomZelStyleIdentifier("quiet");
    domain->registerChangeHandler(recorder.handler("first"), onMain);
    domain->registerChangeHandler(recorder.handler("second"), onMain);
    domain->registerChangeHandler(recorder.handler("quiet"), onQuiet);
    recorder.take();
    main->updateStyleWithChanges(nullptr);
    EXPECT_EQ(recorder.take(), (StyleCalls{{"first", main, 1}, {"second", main, 1}}));
    quiet->updateStyleWithChanges(nullptr);
    EXPECT_EQ(recorder.take(), (StyleCalls{{"quiet", quiet, 1}}));
}

TEST_F(StyleUpdateTests, DescendantsAreDoneDepthFirstBeforeTheDomainHearsOfTheAncestor) {
    const auto nothing = [](const Style&, const Style&) {};
    const auto child = main->inheritedStyleWithChanges(nothing, "child", domain->defaultScheme());
    const auto grandchild =
        child->inheritedStyleWithChanges(nothing, "grandchild", domain->defaultScheme());
    const auto a = listen("main");
    const auto b = listen("child");
    const auto c = listen("grandchild");
    main->addStyleUpdateObserver(observer("observer of main"), a, false);
    grandchild->addStyleUpdateObserver(observer("observer of grandchild"), a, false);
    main->updateStyleWithChanges(nullptr);
    EXPECT_EQ(order, (Names{"observer of grandchild", "grandchild", // the grandchild's update
                            "child", "grandchild",                  // the child's
                            "observer of main", "main", "child", "grandchild"}));
}

TEST_F(StyleUpdateTests, AnUpdateTellsTheDomainOfTheSchemeThatAddedTheStyleLast) {
    const auto other = ZelStyleDomain::domainForIdentifier("terminal");
    const auto object = makeStyled();
    const auto elsewhere = makeStyled();
    domain->registerChangeHandler(handler("editor"), object);
    other->defaultScheme()->addStyle(main);
    other->registerChangeHandler(handler("terminal"), elsewhere);
    order.clear();
    main->updateStyleWithChanges(nullptr);
    EXPECT_EQ(order, Names{"terminal"});
}

TEST_F(StyleUpdateTests, AnUpdateIsSilentOnceAnySchemeHasRemovedTheStyle) {
    const auto object = listen("main");
    domain->lightScheme()->addStyle(main);
    domain->lightScheme()->removeStyle(main);
    ASSERT_EQ(domain->mainStyle(), main) << "the default scheme still holds it";
    main->updateStyleWithChanges(nullptr);
    EXPECT_EQ(main->seed(), 1U);
    EXPECT_EQ(order, Names{});
}

TEST_F(StyleUpdateTests, AStyleWithoutADomainIsUpdatedAllTheSame) {
    const auto style = makeEmptyStyle();
    style->addStyleUpdateObserver(observer("observer"), domain, false);
    style->updateStyleWithChanges(nullptr);
    EXPECT_EQ(style->seed(), 1U);
    EXPECT_EQ(order, Names{"observer"});
}

TEST_F(StyleUpdateTests, TheStylesLockIsHeldFromTheChangesToTheDelivery) {
    Names held;
    const auto note = [&](std::string where) {
        if (!stylingLockIsFree()) {
            held.push_back(std::move(where));
        }
    };
    const auto owner = makePlain();
    main->addStyleUpdateObserver([&](auto&&...) { note("observer"); }, owner, false);
    domain->registerChangeHandler([&](auto&&...) { note("handler"); }, owner);
    held.clear();
    main->updateStyleWithChanges([&](auto&&...) {
        note("changes");
        return true;
    });
    EXPECT_EQ(held, (Names{"changes", "observer", "handler"}));
    EXPECT_TRUE(everyLockIsFree(main));
}

TEST_F(StyleUpdateTests, AStyleMayBeUpdatedFromItsOwnUpdate) {
    const auto object = listen("main");
    bool again = true;
    main->addStyleUpdateObserver(
        [&](const std::shared_ptr<NSObject>&, const Style& style, bool) {
            order.push_back("observer");
            if (std::exchange(again, false)) {
                style->updateStyleWithChanges(nullptr);
            }
        },
        object, false);
    main->updateStyleWithChanges([](const Style& style) {
        style->updateStyleWithChanges([](const Style&) { return false; });
        return true;
    });
    EXPECT_EQ(main->seed(), 2U);
    EXPECT_EQ(order, (Names{"observer", "observer", "main", "main"}));
}

TEST_F(StyleUpdateTests, UpdatesOnManyThreadsAreAllCounted) {
    std::size_t calls = 0; // one update at a time runs its callbacks
    const auto owner = makePlain();
    main->addStyleUpdateObserver([&](auto&&...) { ++calls; }, owner, false);
    const auto update = [&] {
        for (int i = 0; i < 500; ++i) {
            main->updateStyleWithChanges([&](auto&&...) { return ++calls != 0; });
        }
    };
    runAtOnce({update, update, update});
    EXPECT_EQ(main->seed(), 1500U);
    EXPECT_EQ(calls, 3000U);
}

} // namespace
} // namespace zeltest
