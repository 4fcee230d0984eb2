// SPDX-License-Identifier: Apache-2.0
#include "tests/style/StyleModel.h"
#include "tests/support/Sanitized.h"

#include <pthread.h>

#include <vector>

namespace zeltest {
namespace {

using namespace zel;

/// Runs a task on a thread whose stack has no room for a call per style of the chain.
void runOnASmallStack(std::function<void()> task) {
    constexpr std::size_t stackSize = 256 * 1024;
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, stackSize), 0);
    pthread_t thread{};
    const auto run = [](void* given) -> void* {
        (*static_cast<std::function<void()>*>(given))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, run, &task), 0);
    ASSERT_EQ(pthread_join(thread, nullptr), 0);
    pthread_attr_destroy(&attributes);
}

class DeepChainTests : public StylingTests {
protected:
    static constexpr int depth = 5000;
    const Style root = makeEmptyStyle();
    std::vector<Style> chain{root};

    void SetUp() override {
        if (underThreadSanitizer) {
            GTEST_SKIP() << "the thread sanitizer follows 64 locks at a time";
        }
    }
    ~DeepChainTests() override {
        while (!chain.empty()) {
            chain.pop_back();
        }
    }
};

TEST_F(DeepChainTests, AVeryLongChainOfParentsIsMergedOnASmallStack) {
    for (int i = 0; i < depth; ++i) {
        chain.push_back(makeChild(chain.back()));
    }
    root->setValue(gray(0.5), "blueColor");
    chain[1]->setValue(gray(0.25), "paperColor");
    runOnASmallStack([&] {
        EXPECT_EQ(chain.back()->blueColor(), NSColor::colorWithWhite(0.5, 1));
        EXPECT_EQ(chain.back()->effectiveValueForAttribute("paperColor"), gray(0.25));
        EXPECT_TRUE(chain.back()->isChildOf(root));
    });
}

TEST_F(DeepChainTests, AnUpdateReachesTheEndOfAVeryLongChainOnASmallStack) {
    int computed = 0;
    const auto count = [&](const Style&, const Style&) { ++computed; };
    for (int i = 0; i < depth; ++i) {
        chain.push_back(chain.back()->inheritedStyleWithChanges(count, std::to_string(i), nullptr));
    }
    ASSERT_EQ(computed, 5000);
    runOnASmallStack([&] { root->updateStyleWithChanges(nullptr); });
    EXPECT_EQ(computed, 10000);
    EXPECT_EQ(localCounter(chain.back()), 1U);
    EXPECT_EQ(chain.back()->seed(), 5001U);
}

} // namespace
} // namespace zeltest
