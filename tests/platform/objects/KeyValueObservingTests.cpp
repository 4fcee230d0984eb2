// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Watchdog.h"

#include <ZelStyleKit/NSObject.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {

using zel::NSKeyValueObservingOptions;
using zel::NSObject;

/// What an observer was told, and what the observed value was at that moment.
struct Told {
    std::string keyPath;
    const NSObject* object;
    bool isPrior;
    const void* context;
    int value;
    friend bool operator==(const Told&, const Told&) = default;
};

class Thermometer : public NSObject {
public:
    int degrees = 0;

    void setDegrees(int value) {
        willChangeValueForKey("degrees");
        degrees = value;
        didChangeValueForKey("degrees");
    }
};

class Observer : public NSObject {
public:
    std::vector<Told> told;
    std::function<void()> then;

    void observeValueForKeyPath(std::string_view keyPath, NSObject& ofObject,
                                const zel::NSKeyValueChange& change, const void* context) override {
        const auto* thermometer = dynamic_cast<const Thermometer*>(&ofObject);
        told.push_back({std::string(keyPath), &ofObject, change.isPrior, context,
                        thermometer ? thermometer->degrees : -1});
        if (then) {
            then();
        }
    }
};

class KeyValueObserving : public testing::Test {
protected:
    void observe(const std::shared_ptr<NSObject>& by, const void* inContext = nullptr,
                 NSKeyValueObservingOptions options = NSKeyValueObservingOptions::Default) const {
        thermometer->addObserver(by, "degrees", options, inContext);
    }

    const std::shared_ptr<Thermometer> thermometer = zel::alloc<Thermometer>();
    const std::shared_ptr<Observer> observer = zel::alloc<Observer>();
    const int context = 0;
};

TEST_F(KeyValueObserving, AnObserverHearsOnceOfAChangeWithTheNewValueInPlace) {
    observe(observer, &context);
    thermometer->setDegrees(21);
    const std::vector<Told> expected{{"degrees", thermometer.get(), false, &context, 21}};
    EXPECT_EQ(observer->told, expected);
}

TEST_F(KeyValueObserving, AnObserverThatAsksForItHearsBeforeTheChangeToo) {
    thermometer->degrees = 5;
    observe(observer, &context, NSKeyValueObservingOptions::Prior);
    thermometer->setDegrees(21);
    const std::vector<Told> expected{{"degrees", thermometer.get(), true, &context, 5},
                                     {"degrees", thermometer.get(), false, &context, 21}};
    EXPECT_EQ(observer->told, expected);
}

TEST_F(KeyValueObserving, ObserversHearInTheOrderInWhichTheyWereAdded) {
    std::string order;
    const auto second = zel::alloc<Observer>();
    observer->then = [&] { order += "a"; };
    second->then = [&] { order += "b"; };
    observe(second);
    observe(observer);
    thermometer->setDegrees(1);
    EXPECT_EQ(order, "ba");
}

TEST_F(KeyValueObserving, AnObserverHearsNothingOfOtherKeysAndOtherObjects) {
    observe(observer);
    thermometer->willChangeValueForKey("unit");
    thermometer->didChangeValueForKey("unit");
    thermometer->didChangeValueForKey("degree");
    zel::alloc<Thermometer>()->setDegrees(1);
    EXPECT_TRUE(observer->told.empty());
}

TEST_F(KeyValueObserving, AnObserverAddedWithTwoContextsHearsOfEachChangeTwice) {
    const int other = 0;
    observe(observer, &context);
    observe(observer, &other);
    thermometer->setDegrees(1);
    ASSERT_EQ(observer->told.size(), 2U);
    EXPECT_EQ(observer->told[0].context, &context);
    EXPECT_EQ(observer->told[1].context, &other);
}

TEST_F(KeyValueObserving, RemovingOneContextLeavesTheOther) {
    const int other = 0;
    observe(observer, &context);
    observe(observer, &other);
    thermometer->removeObserver(*observer, "degrees", &context);
    thermometer->setDegrees(1);
    ASSERT_EQ(observer->told.size(), 1U);
    EXPECT_EQ(observer->told[0].context, &other);
}

TEST_F(KeyValueObserving, RemovingAnotherObserverOrAnotherKeyLeavesThisOne) {
    const auto other = zel::alloc<Observer>();
    observe(observer, &context);
    thermometer->removeObserver(*other, "degrees", &context);
    thermometer->removeObserver(*observer, "unit", &context);
    thermometer->removeObserver(*observer, "degrees", nullptr);
    thermometer->setDegrees(1);
    EXPECT_EQ(observer->told.size(), 1U);
}

TEST_F(KeyValueObserving, RemovingWhatWasNeverAddedIsHarmless) {
    thermometer->removeObserver(*observer, "degrees", nullptr);
    thermometer->setDegrees(1);
    EXPECT_TRUE(observer->told.empty());
}

TEST_F(KeyValueObserving, AnObjectWithoutObserversChangesWithoutAWord) {
    thermometer->setDegrees(3);
    EXPECT_EQ(thermometer->degrees, 3);
}

TEST_F(KeyValueObserving, NilObservesNothing) {
    thermometer->addObserver(nullptr, "degrees", NSKeyValueObservingOptions::Default, nullptr);
    thermometer->setDegrees(3);
    EXPECT_EQ(thermometer->degrees, 3);
}

TEST_F(KeyValueObserving, ObservingKeepsNeitherSideAlive) {
    auto observed = zel::alloc<Thermometer>();
    auto ending = zel::alloc<Observer>();
    const std::weak_ptr<NSObject> weakObserved = observed;
    const std::weak_ptr<NSObject> weakObserver = ending;
    observed->addObserver(ending, "degrees", NSKeyValueObservingOptions::Default, nullptr);
    ending.reset();
    EXPECT_TRUE(weakObserver.expired());
    observed->setDegrees(1); // reaches nobody
    observed->addObserver(observer, "degrees", NSKeyValueObservingOptions::Default, nullptr);
    observed.reset();
    EXPECT_TRUE(weakObserved.expired());
}

TEST_F(KeyValueObserving, AnObserverMayStopObservingInItsDestructor) {
    class Ending : public Observer {
    public:
        explicit Ending(std::shared_ptr<Thermometer> of) : of_(std::move(of)) {}
        ~Ending() override { of_->removeObserver(*this, "degrees", this); }

    private:
        std::shared_ptr<Thermometer> of_;
    };
    auto ending = std::make_shared<Ending>(thermometer);
    observe(ending, ending.get());
    observe(observer);
    ending.reset();
    thermometer->setDegrees(1);
    EXPECT_EQ(observer->told.size(), 1U);
}

TEST_F(KeyValueObserving, AnObserverAddedDuringAChangeHearsOfTheNextOne) {
    const auto late = zel::alloc<Observer>();
    observer->then = [&] { observe(late); };
    observe(observer);
    thermometer->setDegrees(1);
    EXPECT_TRUE(late->told.empty());
    observer->then = nullptr;
    thermometer->setDegrees(2);
    EXPECT_EQ(late->told.size(), 1U);
}

TEST_F(KeyValueObserving, AnObserverRemovedDuringAChangeHearsNothingOfIt) {
    const auto removed = zel::alloc<Observer>();
    const auto last = zel::alloc<Observer>();
    observer->then = [&] { thermometer->removeObserver(*removed, "degrees", nullptr); };
    observe(observer);
    observe(removed);
    observe(last);
    thermometer->setDegrees(1);
    EXPECT_EQ(observer->told.size(), 1U);
    EXPECT_TRUE(removed->told.empty());
    EXPECT_EQ(last->told.size(), 1U);
}

TEST_F(KeyValueObserving, NobodyHearsOfAChangeAnyMoreWhereAllAreRemovedDuringIt) {
    const auto second = zel::alloc<Observer>();
    observer->then = [&] {
        thermometer->removeObserver(*observer, "degrees", nullptr);
        thermometer->removeObserver(*second, "degrees", nullptr);
    };
    observe(observer);
    observe(second);
    thermometer->setDegrees(1);
    thermometer->setDegrees(2);
    EXPECT_EQ(observer->told.size(), 1U);
    EXPECT_TRUE(second->told.empty());
}

TEST_F(KeyValueObserving, AnObserverThatEndsDuringAChangeHearsNothingOfIt) {
    auto ending = zel::alloc<Observer>();
    bool heard = false;
    ending->then = [&] { heard = true; };
    observer->then = [&] { ending.reset(); };
    observe(observer);
    observe(ending);
    thermometer->setDegrees(1);
    EXPECT_EQ(ending, nullptr);
    EXPECT_FALSE(heard);
}

TEST_F(KeyValueObserving, NoLockIsHeldWhileAnObserverIsTold) {
    const auto late = zel::alloc<Observer>();
    observer->then = [&] { zeltest::runElsewhere([&] { observe(late); }); };
    observe(observer);
    thermometer->setDegrees(1);
    observer->then = nullptr;
    thermometer->setDegrees(2);
    EXPECT_EQ(late->told.size(), 1U);
}

TEST_F(KeyValueObserving, AnObserversExceptionPassesAndNothingStaysLocked) {
    observer->then = [] { throw std::runtime_error("no"); };
    observe(observer);
    EXPECT_THROW(thermometer->setDegrees(1), std::runtime_error);
    observer->then = nullptr;
    zeltest::runElsewhere([&] { thermometer->setDegrees(2); });
    EXPECT_EQ(observer->told.size(), 2U);
}

TEST_F(KeyValueObserving, AnObjectThatOverridesNothingIsToldInVain) {
    observe(zel::alloc<NSObject>());
    const auto plain = zel::alloc<NSObject>();
    observe(plain);
    observe(observer);
    thermometer->setDegrees(1);
    EXPECT_EQ(observer->told.size(), 1U);
}

} // namespace
