// SPDX-License-Identifier: Apache-2.0
#include "tests/figures/AllocationCounter.h"
#include "tests/support/Styling.h"

#include <array>

namespace zeltest {
namespace {

using namespace zel;

/// Bytes and allocations, which are exact. Each is what a user may count on.
class FigureTests : public StylingTests {
protected:
    const std::shared_ptr<ZelStyleDomain> domain = ZelStyleDomain::defaultDomain();
    const std::shared_ptr<ZelStyle> plain = addStyle(domain->defaultScheme(), "main");
    const std::shared_ptr<ZelStyle> light = addStyle(domain->lightScheme(), "main");
    const std::shared_ptr<ZelStyle> dark = addStyle(domain->darkScheme(), "main");

    static std::vector<std::shared_ptr<NSView>> makeViews(std::size_t count) {
        std::vector<std::shared_ptr<NSView>> views;
        views.reserve(count);
        for (std::size_t i = 0; i < count; ++i) {
            views.push_back(alloc<NSView>());
            if (i > 0) {
                views[(i - 1) / 4]->addSubview(views[i]);
            }
        }
        return views;
    }
    void listen(const std::vector<std::shared_ptr<NSView>>& views) {
        for (const auto& view : views) {
            domain->registerChangeHandler([this](const auto&, const auto&, auto) { ++calls; },
                                          view);
        }
        calls = 0;
    }
    template <class Work>
    static std::size_t allocationsOf(Work work) {
        const auto before = Allocations::now().count;
        work();
        return Allocations::now().count - before;
    }

    std::size_t calls = 0;
};

TEST_F(FigureTests, AListenerWithOneHandlerTakesAtMost256BytesStylingStateIncluded) {
    constexpr std::size_t count = 65'536;
    const auto views = makeViews(count);
    const auto before = Allocations::now().liveBytes;
    listen(views);
    const auto bytes = Allocations::now().liveBytes - before;
    EXPECT_LE(bytes, 256 * count) << static_cast<double>(bytes) / count << " each";
    EXPECT_GE(bytes, 64 * count); // it was counted
}

TEST_F(FigureTests, AChildStyleWithThreeValuesTakesUnder640BytesAndUnder4096OnceItWasRead) {
    const std::array colors{NSColor::whiteColor(), NSColor::blackColor(), NSColor::clearColor()};
    (void)plain->labelColor(); // the parent's merged values are there already
    const auto before = Allocations::now().liveBytes;
    const auto child = alloc<ZelStyle>()->initWithIdentifier("c", domain->defaultScheme(), plain);
    child->setLabelColor(colors[0]);
    child->setAccentColor(colors[1]);
    child->setBackgroundColor(colors[2]);
    EXPECT_LT(Allocations::now().liveBytes - before, 640U);
    EXPECT_EQ(child->labelColor(), colors[0]);
    EXPECT_LT(Allocations::now().liveBytes - before, 4096U);
}

TEST_F(FigureTests, ReadingAPredefinedAttributeAllocatesNothing) {
    const auto child = addChildStyle(plain, "child");
    (void)child->backgroundColor();
    (void)child->effectiveValueForAttribute("labelColor"); // the process's first key makes the pool
    EXPECT_EQ(allocationsOf([&] {
                  for (int i = 0; i < 100; ++i) {
                      EXPECT_TRUE(child->backgroundColor());
                      EXPECT_TRUE(child->effectiveValueForAttribute("labelColor"));
                      EXPECT_TRUE(child->styleType());
                  }
              }),
              0U);
}

TEST_F(FigureTests, ASwitchAllocatesNothing) {
    const auto views = makeViews(1000);
    listen(views);
    domain->setCurrentScheme(domain->darkScheme());
    const auto lightScheme = domain->lightScheme();
    calls = 0;
    EXPECT_EQ(allocationsOf([&] { domain->setCurrentScheme(lightScheme); }), 0U);
    EXPECT_EQ(calls, 1000U);
}

TEST_F(FigureTests, ANotificationInWhichNobodysStyleChangedAllocatesNothing) {
    const auto views = makeViews(1000);
    listen(views);
    EXPECT_EQ(allocationsOf([&] { domain->notifyForStyleChangeOf(nullptr, {}); }), 0U);
    EXPECT_EQ(calls, 0U);
}

TEST_F(FigureTests, AChangeOfOneNodeAllocatesItsIdentifierAlone) {
    const auto views = makeViews(1000);
    listen(views);
    views[3]->setCustomZelStyleSchemeIdentifier("dark");
    views[3]->setCustomZelStyleSchemeIdentifier("light");
    calls = 0;
    EXPECT_EQ(allocationsOf([&] { views[3]->setCustomZelStyleSchemeIdentifier("dark"); }), 1U);
    EXPECT_GT(calls, 100U);
}

TEST_F(FigureTests, AnUpdateAllocatesNothingOnceItWasMadeBefore) {
    constexpr std::size_t count = 100;
    const auto views = makeViews(count);
    std::vector<std::shared_ptr<ZelStyle>> children;
    for (std::size_t i = 0; i < count; ++i) {
        const std::string identifier = "child" + std::to_string(i);
        children.push_back(plain->inheritedStyleWithChanges(
            [](const auto& parent, const auto& child) {
                child->setBackgroundColor(parent->accentColor());
            },
            identifier, domain->defaultScheme()));
        views[i]->setCustomZelStyleIdentifier(identifier);
        domain->registerChangeHandler(
            [this](const auto&, const auto& style, auto) {
                calls += style->backgroundColor().has_value() ? 1 : 0;
            },
            views[i]);
    }
    plain->updateStyleWithChanges(nullptr);
    calls = 0;
    EXPECT_EQ(allocationsOf([&] { plain->updateStyleWithChanges(nullptr); }), 0U);
    EXPECT_EQ(calls, 2 * count); // each for its own style's update and for the parent's
}

TEST_F(FigureTests, ListenersThatComeAndGoLeaveTheMemoryFlat) {
    const auto cycle = [&] {
        for (int i = 0; i < 1000; ++i) {
            const auto view = alloc<NSView>();
            view->setCustomZelStyleIdentifier("x");
            domain->registerChangeHandler([this](const auto&, const auto&, auto) { ++calls; },
                                          view);
        }
    };
    cycle();
    const auto before = Allocations::now().liveBytes;
    for (int i = 0; i < 20; ++i) {
        cycle();
    }
    EXPECT_LE(Allocations::now().liveBytes, before + 1024);
}

TEST(SetupFigures, TheManagersSetupMakesUnder300Allocations) {
    NSUserDefaults::standardUserDefaults().setStore(std::make_shared<NSUserDefaultsInMemory>());
    NSApplication::sharedApplication();
    const auto before = Allocations::now().count;
    ZelStyleManager::setup();
    EXPECT_LT(Allocations::now().count - before, 300U);
}

} // namespace
} // namespace zeltest
