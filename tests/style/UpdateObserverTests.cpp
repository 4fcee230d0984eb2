// SPDX-License-Identifier: Apache-2.0
#include "tests/style/StyleModel.h"

#include <atomic>
#include <thread>
#include <vector>

namespace zeltest {
namespace {

using namespace zel;

struct ObserverCall {
    std::string observer;
    std::shared_ptr<NSObject> owner;
    Style style;
    bool initial = false;

    friend bool operator==(const ObserverCall&, const ObserverCall&) = default;
};
using ObserverCalls = std::vector<ObserverCall>;

class UpdateObserverTests : public StylingTests {
protected:
    const Style style = makeEmptyStyle();
    std::shared_ptr<NSObject> owner = makePlain();
    const std::shared_ptr<NSObject> other = makePlain();
    ObserverCalls calls;

    /// Records under a name, then does what else it was given to do.
    ZelStyle::UpdateObserver observer(std::string name, std::function<void()> then = nullptr) {
        return [this, name = std::move(name), then = std::move(then)](
                   const std::shared_ptr<NSObject>& ofOwner, const Style& ofStyle, bool initial) {
            calls.push_back({name, ofOwner, ofStyle, initial});
            if (then) {
                then();
            }
        };
    }
    void update() { style->updateStyleWithChanges(nullptr); }
    ObserverCalls take() { return std::exchange(calls, {}); }
    std::vector<std::string> takeNames() {
        std::vector<std::string> names;
        for (const ObserverCall& each : take()) {
            names.push_back(each.observer);
        }
        return names;
    }
    using Names = std::vector<std::string>;
};

TEST_F(UpdateObserverTests, AnObserverIsCalledForEachUpdateWithItsOwnerAndTheStyle) {
    style->addStyleUpdateObserver(observer("first"), owner, false);
    EXPECT_EQ(take(), ObserverCalls{}) << "no call was asked for on adding";
    update();
    update();
    EXPECT_EQ(take(),
              (ObserverCalls{{"first", owner, style, false}, {"first", owner, style, false}}));
}

TEST_F(UpdateObserverTests, TheInitialCallIsMadeOnceAndSaysSo) {
    style->addStyleUpdateObserver(observer("first"), owner, true);
    EXPECT_EQ(take(), (ObserverCalls{{"first", owner, style, true}}));
    EXPECT_EQ(style->seed(), 0U);
    update();
    EXPECT_EQ(take(), (ObserverCalls{{"first", owner, style, false}}));
}

TEST_F(UpdateObserverTests, TheInitialCallIsMadeWithTheStylesLockHeld) {
    bool free = true;
    style->addStyleUpdateObserver(observer("first", [&] { free = stylingLockIsFree(); }), owner,
                                  true);
    EXPECT_FALSE(free);
    EXPECT_TRUE(everyLockIsFree(style));
}

TEST_F(UpdateObserverTests, OwnersAreServedInTheOrderInWhichTheyCame) {
    const auto third = makePlain();
    style->addStyleUpdateObserver(observer("owner"), owner, false);
    style->addStyleUpdateObserver(observer("other"), other, false);
    style->addStyleUpdateObserver(observer("third"), third, false);
    update();
    EXPECT_EQ(takeNames(), (Names{"owner", "other", "third"}));
}

TEST_F(UpdateObserverTests, ASecondObserverOfAnOwnerReplacesTheFirst) {
    const auto captured = std::make_shared<int>(0);
    style->addStyleUpdateObserver([captured](auto&&...) {}, owner, false);
    ASSERT_EQ(captured.use_count(), 2);
    style->addStyleUpdateObserver(observer("second"), owner, true);
    EXPECT_EQ(captured.use_count(), 1) << "the first one is gone, with what it held";
    EXPECT_EQ(take(), (ObserverCalls{{"second", owner, style, true}}));
    update();
    EXPECT_EQ(takeNames(), Names{"second"});
}

TEST_F(UpdateObserverTests, AnOwnerMayObserveSeveralStyles) {
    const auto another = makeEmptyStyle();
    style->addStyleUpdateObserver(observer("style"), owner, false);
    another->addStyleUpdateObserver(observer("another"), owner, false);
    update();
    EXPECT_EQ(takeNames(), Names{"style"});
    another->updateStyleWithChanges(nullptr);
    EXPECT_EQ(takeNames(), Names{"another"});
    style->removeStyleUpdateObserverWithOwner(owner);
    update();
    another->updateStyleWithChanges(nullptr);
    EXPECT_EQ(takeNames(), Names{"another"});
}

TEST_F(UpdateObserverTests, AStyleMayObserveItself) {
    style->addStyleUpdateObserver(observer("itself"), style, false);
    update();
    EXPECT_EQ(takeNames(), Names{"itself"});
}

TEST_F(UpdateObserverTests, RemovingWhatIsNotThereIsHarmless) {
    style->removeStyleUpdateObserverWithOwner(owner);
    style->removeStyleUpdateObserverWithOwner(nullptr);
    style->addStyleUpdateObserver(observer("owner"), owner, false);
    style->removeStyleUpdateObserverWithOwner(other);
    style->removeStyleUpdateObserverWithOwner(nullptr);
    update();
    EXPECT_EQ(takeNames(), Names{"owner"});
    EXPECT_TRUE(everyLockIsFree(style));
}

TEST_F(UpdateObserverTests, ANilObserverOrOwnerIsIgnored) {
    style->addStyleUpdateObserver(observer("nobody's"), nullptr, true);
    style->addStyleUpdateObserver(observer("owner"), owner, false);
    style->addStyleUpdateObserver(nullptr, owner, true);
    EXPECT_EQ(take(), ObserverCalls{});
    update();
    EXPECT_EQ(takeNames(), Names{"owner"}) << "nil replaces nothing";
}

TEST_F(UpdateObserverTests, AnObserverGoesWithItsOwner) {
    const auto captured = std::make_shared<int>(0);
    const std::weak_ptr<NSObject> watched = owner;
    style->addStyleUpdateObserver(
        [captured, record = observer("owner")](auto&&... each) { record(each...); }, owner, false);
    ASSERT_EQ(captured.use_count(), 2);
    owner.reset();
    EXPECT_TRUE(watched.expired()) << "the style holds its owners weakly";
    EXPECT_EQ(captured.use_count(), 1) << "what the observer held ends with the owner";
    update();
    EXPECT_EQ(take(), ObserverCalls{});
    EXPECT_EQ(style->seed(), 1U);
}

TEST_F(UpdateObserverTests, AnOwnerThatEndsDuringAnUpdateIsSkippedAndNothingRaises) {
    style->addStyleUpdateObserver(observer("other", [&] { owner.reset(); }), other, false);
    style->addStyleUpdateObserver(observer("owner"), owner, false);
    EXPECT_NO_THROW(update());
    EXPECT_EQ(takeNames(), Names{"other"});
}

TEST_F(UpdateObserverTests, AnObserverAddedByTheChangesHearsOfThatUpdate) {
    style->updateStyleWithChanges([&](auto&&...) {
        style->addStyleUpdateObserver(observer("owner"), owner, false);
        return true;
    });
    EXPECT_EQ(takeNames(), Names{"owner"});
}

TEST_F(UpdateObserverTests, AnObserverMayObserveOtherStyles) {
    const auto another = makeEmptyStyle();
    style->addStyleUpdateObserver(
        observer("owner",
                 [&] { another->addStyleUpdateObserver(observer("another"), other, false); }),
        owner, false);
    EXPECT_NO_THROW(update());
    another->updateStyleWithChanges(nullptr);
    EXPECT_EQ(takeNames(), (Names{"owner", "another"}));
}

// What the observer uses may end once it is removed.
TEST_F(UpdateObserverTests, RemovingWaitsForAnInitialCallOnAnotherThread) {
    std::atomic<bool> isAsked{false};
    std::atomic<bool> isRemoved{false};
    std::thread removing;
    const auto call = [&] {
        removing = std::thread([&] {
            isAsked = true;
            style->removeStyleUpdateObserverWithOwner(owner);
            isRemoved = true;
        });
        for (int i = 0; !isAsked || i < 100'000; ++i) {
            std::this_thread::yield();
        }
        EXPECT_FALSE(isRemoved);
    };
    style->addStyleUpdateObserver(observer("first", call), owner, true);
    removing.join();
    EXPECT_TRUE(isRemoved);
    calls.clear();
    update();
    EXPECT_TRUE(calls.empty());
}

} // namespace
} // namespace zeltest
