// SPDX-License-Identifier: Apache-2.0
#include "tests/style/StyleModel.h"
#include "tests/support/OperatorNew.h"

#include <atomic>
#include <cstdlib>
#include <future>
#include <mutex>
#include <new>
#include <thread>

namespace zeltest {

namespace {

// What this thread has allocated so far.
thread_local std::size_t allocations = 0;

} // namespace

void* newBlock(std::size_t size) {
    ++allocations;
    if (void* memory = std::malloc(size > 0 ? size : 1)) {
        return memory;
    }
    throw std::bad_alloc();
}

void deleteBlock(void* block) noexcept {
    std::free(block);
}

namespace {

using namespace zel;

class StyleReadTests : public StylingTests {
protected:
    const Style style = alloc<ZelStyle>()->initWithIdentifier("main", nullptr);
    const Style child = makeChild(style);

    /// Two threads read over and over while another writes; every read answers that it was whole.
    static void readWhile(const std::function<void()>& write, const std::function<bool()>& read) {
        std::atomic<bool> done = false;
        const auto readOn = [&] {
            bool whole = true;
            do {
                whole = whole && read();
            } while (!done.load());
            EXPECT_TRUE(whole);
        };
        runAtOnce({readOn, readOn, [&] {
                       write();
                       done = true;
                   }});
    }
};

TEST_F(StyleReadTests, ReadingAPredefinedAttributeAllocatesNothing) {
    ASSERT_TRUE(child->effectiveValueForAttribute("labelColor")); // the first by key in a process
    const std::size_t before = allocations;
    const auto color = child->labelColor();
    const auto type = child->styleType();
    const auto value = child->effectiveValueForAttribute("grayColor3");
    const bool dark = child->isDarkStyle();
    const std::size_t after = allocations;
    EXPECT_EQ(after - before, 0U);
    EXPECT_TRUE(color && type && value && !dark);
}

TEST_F(StyleReadTests, ReadingAColourOfTheHostsOwnAllocatesNothing) {
    style->setValue(gray(0.5), "a key that is longer than any string keeps inside itself");
    ASSERT_TRUE(style->effectiveValueForAttribute(
        "a key that is longer than any string keeps inside itself"));
    const std::size_t before = allocations;
    const auto value = style->effectiveValueForAttribute(
        "a key that is longer than any string keeps inside itself");
    const auto absent = style->effectiveValueForAttribute(
        "a key that nobody has written, of the same excessive length");
    const std::size_t after = allocations;
    EXPECT_EQ(after - before, 0U);
    EXPECT_EQ(value, gray(0.5));
    EXPECT_EQ(absent, std::nullopt);
}

TEST_F(StyleReadTests, AReadOfAPredefinedAttributeTakesNoLockOnceTheValuesAreMerged) {
    ASSERT_TRUE(child->labelColor());
    stylesLock.lock();
    runElsewhere([&] {
        EXPECT_EQ(child->labelColor(), NSColor::colorWithSRGBRed(0, 0, 0, 1));
        EXPECT_TRUE(child->isCustomStyle());
        EXPECT_EQ(child->effectiveValueForAttribute("labelColor"),
                  Value(NSColor::colorWithSRGBRed(0, 0, 0, 1)));
    });
    stylesLock.unlock();
}

TEST_F(StyleReadTests, AReadWaitsForNoUpdate) {
    ASSERT_TRUE(child->labelColor());
    child->updateStyleWithChanges([&](const Style& updated) {
        runElsewhere([&] {
            EXPECT_EQ(updated->labelColor(), NSColor::colorWithSRGBRed(0, 0, 0, 1));
            updated->setValue(gray(0.5), "blueColor");
            EXPECT_EQ(updated->effectiveValueForAttribute("blueColor"), gray(0.5));
            EXPECT_EQ(updated->seed(), 0U);
        });
        return true;
    });
}

TEST_F(StyleReadTests, AStyleThatNobodyReadsMergesNothing) {
    child->setValue(gray(0.5), "blueColor");
    child->updateStyleWithChanges(nullptr);
    EXPECT_EQ(child->valueForAttribute("blueColor"), gray(0.5));
    EXPECT_FALSE(hasComputedValues(child));
    ASSERT_EQ(child->effectiveValueForAttribute("blueColor"), gray(0.5));
    EXPECT_TRUE(hasComputedValues(child));
}

TEST_F(StyleReadTests, AReaderNeverSeesHalfOfAWrite) {
    const NSColor first = NSColor::colorWithSRGBRed(0.1, 0.2, 0.3, 0.4);
    const NSColor second = NSColor::colorWithDeviceCyan(0.5, 0.6, 0.7, 0.8, 0.9);
    child->setBlueColor(first);
    child->setValue(Value(first), "paperColor");
    readWhile(
        [&] {
            for (int i = 0; i < 20000; ++i) {
                child->setBlueColor(i % 2 == 0 ? second : first);
                child->setValue(Value(i % 3 == 0 ? second : first), "paperColor");
            }
        },
        [&] {
            const auto blue = child->blueColor();
            const auto paper = child->effectiveValueForAttribute("paperColor");
            return (blue == first || blue == second) &&
                   (paper == Value(first) || paper == Value(second));
        });
    EXPECT_EQ(child->blueColor(), first);
}

TEST_F(StyleReadTests, UninterpretedValuesAreReadWholeWhileTheyAreReplaced) {
    const ZelAttributeValue first(std::string("Serif 12"));
    const ZelAttributeValue second(std::string("Sans 9"));
    const Value third = gray(0.5);
    style->setValue(first, "font");
    readWhile(
        [&] {
            for (int i = 0; i < 5000; ++i) {
                style->setValue(second, "font");
                style->setValue(third, "font");
                style->setValue(first, "font");
            }
        },
        [&] {
            const Value value = style->effectiveValueForAttribute("font");
            return value == Value(first) || value == Value(second) || value == third;
        });
    EXPECT_EQ(style->effectiveValueForAttribute("font"), Value(first));
}

TEST_F(StyleReadTests, ParentsAndChildrenAreReadAndWrittenOnManyThreads) {
    const auto sibling = makeChild(style);
    const auto work = [&](const Style& on, double level) {
        for (int i = 0; i < 3000; ++i) {
            on->setValue(gray(level), i % 2 == 0 ? "paperColor" : "blueColor");
            EXPECT_EQ(on->effectiveValues()->size(), 56U);
        }
    };
    style->setValue(gray(0), "paperColor");
    runAtOnce(
        {[&] { work(style, 0.25); }, [&] { work(child, 0.5); }, [&] { work(sibling, 0.75); }});
    EXPECT_EQ(style->effectiveValueForAttribute("paperColor"), gray(0.25));
    EXPECT_EQ(child->effectiveValueForAttribute("paperColor"), gray(0.5));
    EXPECT_EQ(sibling->effectiveValueForAttribute("blueColor"), gray(0.75));
}

// A parent that ends in another one's computation, while the lock is held, would wait for itself.
TEST_F(StyleReadTests, ParentsMayBeLetGoWhileAnotherThreadReads) {
    std::atomic<bool> isDone{false};
    const auto top = makeEmptyStyle();
    top->setValue(gray(0.5), "blueColor");
    constexpr int rounds = 500;
    std::mutex mutex;
    Style shared;
    const auto read = [&] {
        while (!isDone) {
            Style found;
            {
                const std::scoped_lock guard(mutex);
                found = shared;
            }
            if (found) {
                const auto color = found->blueColor(); // its parent's, or none any more
                EXPECT_TRUE(!color || color == NSColor::colorWithWhite(0.5, 1));
            }
        }
    };
    const auto letGo = [&] {
        for (int i = 0; i < rounds; ++i) {
            auto parent = makeChild(top);
            auto bottom = makeChild(parent);
            {
                const std::scoped_lock guard(mutex);
                shared = bottom;
            }
            parent.reset();
        }
        isDone = true;
    };
    runAtOnce({read, letGo});
}

TEST_F(StyleReadTests, AReplacedValueEndsWithTheStylesLockFree) {
    bool wasFree = false;
    const auto ending = [&](const int* content) {
        delete content;
        requireNoPrivateLock();
        runElsewhere([&] { wasFree = style->valueForAttribute("font").has_value(); });
    };
    style->setValue(ZelAttributeValue(std::shared_ptr<const int>(new int(1), ending)), "font");
    ASSERT_TRUE(style->effectiveValues()->contains("font")); // the snapshot holds it as well
    style->setValue(std::nullopt, "font");
    EXPECT_TRUE(wasFree);
}

/// Reads a style when its thread ends, after what was made for that thread later.
struct ReadAtEnd {
    Style style;
    std::optional<NSColor>* read = nullptr;
    ~ReadAtEnd() {
        if (style) {
            *read = style->labelColor();
        }
    }
};

TEST_F(StyleReadTests, AThreadsLocalsMayReadWhileItEnds) {
    const auto above = makeEmptyStyle();
    const auto below = makeChild(above);
    std::optional<NSColor> read;
    std::thread([&] {
        static thread_local ReadAtEnd atEnd;
        atEnd.style = below;
        atEnd.read = &read;
        (void)below->labelColor(); // computes, holding the style above
        for (const auto& each : {above, below}) {
            each->updateStyleWithChanges([](const Style& changed) {
                changed->setLabelColor(NSColor::whiteColor());
                return true;
            });
        }
    }).join();
    EXPECT_EQ(read, NSColor::whiteColor());
}

} // namespace
} // namespace zeltest
