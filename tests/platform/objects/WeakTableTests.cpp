// SPDX-License-Identifier: Apache-2.0
#include "platform/objects/WeakTable.h"
#include "tests/support/Watchdog.h"

#include <ZelStyleKit/NSObject.h>

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using zel::NSObject;
using zel::RecursiveGuard;

/// A payload that says where it ends.
using Payload = std::shared_ptr<int>;
using Table = zel::WeakTable<Payload>;

class WeakTable : public testing::Test {
protected:
    std::shared_ptr<NSObject> add(int number) {
        auto owner = zel::alloc<NSObject>();
        insert(owner, number);
        return owner;
    }
    void insert(const std::shared_ptr<NSObject>& owner, int number) {
        const RecursiveGuard guard(table->lock);
        table->insert(owner, std::make_shared<int>(number));
    }
    /// An owner's payload in a table; null where it has none.
    static Payload payloadOf(const NSObject& owner, Table& in) {
        const RecursiveGuard guard(in.lock);
        const auto* entry = in.find(owner);
        return entry ? entry->payload : nullptr;
    }
    [[nodiscard]] Payload payloadOf(const NSObject& owner) const {
        return payloadOf(owner, *table);
    }
    std::vector<int> walk(const std::function<void(int)>& visit = nullptr) {
        std::vector<int> visited;
        for (Table::Walk walk(table); auto* entry = walk.next();) {
            visited.push_back(*entry->payload);
            if (visit) {
                visit(visited.back());
            }
        }
        return visited;
    }
    Payload remove(const NSObject& owner) {
        const RecursiveGuard guard(table->lock);
        return table->remove(*table->find(owner));
    }

    std::shared_ptr<Table> table = std::make_shared<Table>();
};

TEST_F(WeakTable, AnOwnersPayloadIsFoundAgain) {
    const auto a = add(1);
    const auto b = add(2);
    ASSERT_NE(payloadOf(*a), nullptr);
    EXPECT_EQ(*payloadOf(*a), 1);
    EXPECT_EQ(*payloadOf(*b), 2);
    EXPECT_EQ(payloadOf(*zel::alloc<NSObject>()), nullptr);
    EXPECT_EQ(table->size(), 2U);
}

TEST_F(WeakTable, AnOwnerMayStandInManyTables) {
    const auto a = add(1);
    const auto other = std::make_shared<Table>();
    EXPECT_EQ(payloadOf(*a, *other), nullptr);
    {
        const RecursiveGuard guard(other->lock);
        other->insert(a, std::make_shared<int>(9));
    }
    EXPECT_EQ(*payloadOf(*a), 1);
    EXPECT_EQ(*payloadOf(*a, *other), 9);
    {
        const RecursiveGuard guard(other->lock);
        EXPECT_EQ(*other->remove(*other->find(*a)), 9);
    }
    EXPECT_EQ(payloadOf(*a, *other), nullptr);
    EXPECT_EQ(*payloadOf(*a), 1);
}

TEST_F(WeakTable, AWalkVisitsOwnersInTheOrderInWhichTheyCame) {
    std::vector<std::shared_ptr<NSObject>> owners;
    std::vector<int> expected;
    for (int i = 0; i < 700; ++i) {
        owners.push_back(add(i));
        expected.push_back(i);
    }
    EXPECT_EQ(walk(), expected);
}

TEST_F(WeakTable, AnEndingOwnerTakesItsPayloadWithItAtOnce) {
    auto a = add(1);
    const auto b = add(2);
    const std::weak_ptr<int> payload = payloadOf(*a);
    a.reset();
    EXPECT_TRUE(payload.expired());
    EXPECT_EQ(table->size(), 1U);
    EXPECT_EQ(walk(), std::vector<int>{2});
}

TEST_F(WeakTable, RemovingHandsThePayloadOut) {
    const auto a = add(1);
    const Payload removed = remove(*a);
    EXPECT_EQ(*removed, 1);
    EXPECT_EQ(table->size(), 0U);
    EXPECT_EQ(payloadOf(*a), nullptr);
    insert(a, 3);
    EXPECT_EQ(walk(), std::vector<int>{3});
}

TEST_F(WeakTable, ChangesByHandAreCountedAndAnOwnersEndIsNot) {
    EXPECT_EQ(table->mutations(), 0U);
    auto a = add(1);
    auto b = add(2);
    EXPECT_EQ(table->mutations(), 2U);
    remove(*a);
    EXPECT_EQ(table->mutations(), 3U);
    b.reset();
    EXPECT_EQ(table->mutations(), 3U);
}

TEST_F(WeakTable, WhatIsRemovedDuringAWalkIsNotVisitedAnyMore) {
    const auto a = add(1);
    const auto b = add(2);
    const auto c = add(3);
    EXPECT_EQ(walk([&](int number) {
                  if (number == 1) {
                      remove(*b);
                  }
              }),
              (std::vector<int>{1, 3}));
}

TEST_F(WeakTable, AnOwnerThatEndsDuringAWalkIsNotVisitedAnyMore) {
    const auto a = add(1);
    auto b = add(2);
    const auto c = add(3);
    EXPECT_EQ(walk([&](int) { b.reset(); }), (std::vector<int>{1, 3}));
}

TEST_F(WeakTable, WhatIsAddedDuringAWalkIsNotVisitedYet) {
    std::vector<std::shared_ptr<NSObject>> owners{add(1), add(2)};
    EXPECT_EQ(walk([&](int) {
                  for (int i = 0; i < 40 && owners.size() < 400; ++i) {
                      owners.push_back(add(7));
                  }
              }),
              (std::vector<int>{1, 2}));
    EXPECT_EQ(walk().size(), 82U);
}

TEST_F(WeakTable, AnOwnerRemovedAndAddedAgainDuringAWalkIsNotVisitedASecondTime) {
    const auto a = add(1);
    EXPECT_EQ(walk([&](int number) {
                  if (number == 5) {
                      return; // as it was added: it should not have come here
                  }
                  remove(*a);
                  insert(a, 5);
              }),
              std::vector<int>{1});
}

TEST_F(WeakTable, AWalkWithinAWalkSeesWhatTheOuterOneAdded) {
    std::vector<std::shared_ptr<NSObject>> owners{add(1)};
    std::vector<int> inner;
    walk([&](int number) {
        if (number == 2) {
            return;
        }
        owners.push_back(add(2));
        inner = walk();
    });
    EXPECT_EQ(inner, (std::vector<int>{1, 2}));
}

TEST_F(WeakTable, AVisitedOwnerIsHeldUntilTheNextStep) {
    auto a = add(1);
    const std::weak_ptr<NSObject> weak = a;
    bool held = false;
    walk([&](int) {
        a.reset();
        held = !weak.expired();
    });
    EXPECT_TRUE(held);
    EXPECT_TRUE(weak.expired());
}

TEST_F(WeakTable, AWalkHoldsTheLockAndReleasesItWhenAnExceptionPasses) {
    const auto a = add(1);
    std::optional<bool> free;
    EXPECT_THROW(walk([&](int) {
                     zeltest::runElsewhere([&] {
                         free = table->lock.try_lock();
                         if (*free) {
                             table->lock.unlock();
                         }
                     });
                     throw std::runtime_error("no");
                 }),
                 std::runtime_error);
    EXPECT_EQ(free, false);
    zeltest::runElsewhere([&] { EXPECT_EQ(walk(), std::vector<int>{1}); });
}

TEST_F(WeakTable, APayloadThatIsBeingCalledStaysUntilTheCallIsOver) {
    auto a = add(1);
    const std::weak_ptr<int> payload = payloadOf(*a);
    {
        const RecursiveGuard guard(table->lock);
        Table::Call outer(*table);
        outer.begin(*table->find(*a));
        {
            Table::Call inner(*table);
            inner.begin(*table->find(*a));
            EXPECT_EQ(table->remove(*table->find(*a)), nullptr);
            EXPECT_EQ(table->find(*a), nullptr);
        }
        EXPECT_FALSE(payload.expired());
    }
    EXPECT_TRUE(payload.expired());
}

TEST_F(WeakTable, ManyComingsAndGoingsKeepTheOrderAndEveryPayload) {
    std::vector<std::shared_ptr<NSObject>> owners;
    for (int i = 0; i < 1000; ++i) {
        owners.push_back(add(i));
        if (i % 10 != 0) {
            owners.back().reset();
        }
    }
    std::vector<int> expected;
    for (int i = 0; i < 1000; i += 10) {
        expected.push_back(i);
    }
    EXPECT_EQ(walk(), expected);
    for (std::size_t i = 0; i < 1000; i += 10) {
        ASSERT_NE(payloadOf(*owners[i]), nullptr);
        EXPECT_EQ(*payloadOf(*owners[i]), static_cast<int>(i));
    }
    EXPECT_EQ(table->size(), 100U);
}

TEST_F(WeakTable, ATableThatEndsFirstLeavesItsOwnersAlone) {
    const auto a = add(1);
    const std::weak_ptr<int> payload = payloadOf(*a);
    table.reset();
    EXPECT_TRUE(payload.expired());
    table = std::make_shared<Table>();
    EXPECT_EQ(payloadOf(*a), nullptr);
    insert(a, 2);
    EXPECT_EQ(walk(), std::vector<int>{2});
}

TEST_F(WeakTable, OwnersMayEndOnOtherThreadsWhileTheTableIsWalkedAndEnds) {
    for (int round = 0; round < 50; ++round) {
        std::vector<std::shared_ptr<NSObject>> owners;
        std::vector<std::weak_ptr<int>> payloads;
        for (int i = 0; i < 60; ++i) {
            owners.push_back(add(i));
            payloads.emplace_back(payloadOf(*owners.back()));
        }
        zeltest::runAtOnce({[&] { owners.clear(); },
                            [&] {
                                walk();
                                table = std::make_shared<Table>();
                            }});
        for (const auto& payload : payloads) {
            EXPECT_TRUE(payload.expired());
        }
    }
}

} // namespace
