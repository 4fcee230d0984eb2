// SPDX-License-Identifier: Apache-2.0
#include "platform/locks/LockOrder.h"

#include "platform/locks/NestedLocks.h"

#include <cstdio>
#include <cstdlib>

namespace zel {
inline namespace v1 {
namespace {

constexpr bool rulesStandAtTheirRanks() {
    for (std::size_t i = 0; i < lockRules.size(); ++i) {
        if (lockRules[i].rank != static_cast<LockRank>(i)) {
            return false;
        }
    }
    return true;
}
static_assert(rulesStandAtTheirRanks());

void printLock(const char* before, const RecursiveLock& lock, LockRank rank, const char* after) {
    const std::string_view name = ruleOf(rank).name;
    std::fprintf(stderr, "%s\"%.*s\" (%p)%s", before, static_cast<int>(name.size()), name.data(),
                 static_cast<const void*>(&lock), after);
}

void printReason(const char* before, LockRank rank) {
    const std::string_view reason = ruleOf(rank).reason;
    std::fprintf(stderr, "%s%.*s\n", before, static_cast<int>(reason.size()), reason.data());
}

[[noreturn]] void failNotHeld(const char* before, const RecursiveLock& lock, LockRank rank) {
    printLock(before, lock, rank, "\n");
    CallStack::printPresent();
    std::abort();
}

[[noreturn]] void fail(const HeldLock& held, LockRank heldRank, const RecursiveLock& lock,
                       LockRank rank, const CallStack* otherWayRound) noexcept {
    printLock("locks out of order: ", lock, rank, " is taken inside ");
    printLock("", *held.lock, heldRank, "\n");
    printReason("the rule: ", rank);
    if (heldRank != rank) {
        printReason("of the lock that is held: ", heldRank);
    }
    printLock("", *held.lock, heldRank, " was taken here:\n");
    held.taken.print();
    if (otherWayRound) {
        std::fputs("the two were taken the other way round here:\n", stderr);
        otherWayRound->print();
    }
    printLock("", lock, rank, " is taken here:\n");
    CallStack::printPresent();
    std::abort();
}

} // namespace

HeldLocks& HeldLocks::ofThisThread() noexcept {
    constinit thread_local HeldLocks held{};
    return held;
}

HeldLock* HeldLocks::find(const RecursiveLock& lock) noexcept {
    const std::uint32_t place = lock.place_.load(std::memory_order_relaxed);
    const bool mayBeMine = place != 0 && place <= size_;
    return mayBeMine && at(place - 1).lock == &lock ? &at(place - 1) : nullptr;
}

/// Whether a lock may be taken while one of a rank is held.
bool HeldLocks::isInOrder(const RecursiveLock& lock, LockRank held) const noexcept {
    const LockRule& rule = ruleOf(lock.rank_);
    const LockUse heldUse = ruleOf(held).use;
    if (rule.use == LockUse::CallsBack && heldUse == LockUse::CallsBack) {
        // A lock that nobody has taken yet is of an object that is being made: nobody else knows
        // it, so that nobody can hold it and wait.
        return holds(LockRank::DeliveryGate) || rule.belongsTo == held ||
               lock.place_.load(std::memory_order_relaxed) == RecursiveLock::neverTaken;
    }
    return held < lock.rank_ || (held == lock.rank_ && rule.use == LockUse::Nested);
}

HeldLock& HeldLocks::lastOf(LockRank rank) noexcept {
    std::uint32_t index = size_ - 1;
    while (at(index).lock == nullptr || at(index).lock->rank_ != rank) {
        --index;
    }
    return at(index);
}

void HeldLocks::check(RecursiveLock& lock) noexcept {
    if (size_ == 0 || find(lock)) {
        return;
    }
    for (const LockRule& rule : lockRules) {
        if (holds(rule.rank) && !isInOrder(lock, rule.rank)) {
            fail(lastOf(rule.rank), rule.rank, lock, lock.rank_, nullptr);
        }
    }
    if (ruleOf(lock.rank_).use == LockUse::Nested && holds(lock.rank_)) {
        const HeldLock& outer = lastOf(lock.rank_);
        if (const auto before = NestedLocks::noteInside(*outer.lock, lock)) {
            fail(outer, lock.rank_, lock, lock.rank_, &*before);
        }
    }
}

void HeldLocks::noteTaken(RecursiveLock& lock) noexcept {
    if (HeldLock* held = find(lock)) {
        ++held->count;
        return;
    }
    if (size_ >= usual + moreCapacity_) {
        growTo(size_ + 1);
    }
    at(size_) = {&lock, 1, CallStack::here()};
    ++size_;
    ++byRank_[static_cast<std::size_t>(lock.rank_)];
    lock.place_.store(size_, std::memory_order_relaxed);
}

void HeldLocks::noteReleased(RecursiveLock& lock) noexcept {
    HeldLock* held = find(lock);
    if (held == nullptr) {
        failNotHeld("a lock is released by a thread that doesn't hold it: ", lock, lock.rank_);
    }
    if (--held->count > 0) {
        return;
    }
    held->lock = nullptr;
    lock.place_.store(0, std::memory_order_relaxed);
    --byRank_[static_cast<std::size_t>(lock.rank_)];
    while (size_ > 0 && at(size_ - 1).lock == nullptr) {
        --size_;
    }
    if (size_ == 0 && more_) {
        std::free(more_); // NOLINT(cppcoreguidelines-no-malloc)
        more_ = nullptr;
        moreCapacity_ = 0;
    }
}

void HeldLocks::requireHeld(const RecursiveLock& lock) noexcept {
    if (!find(lock)) {
        failNotHeld("what a lock guards is used by a thread that doesn't hold it: ", lock,
                    lock.rank_);
    }
}

void HeldLocks::growTo(std::uint32_t count) noexcept {
    const std::uint32_t capacity = 2 * count;
    // Not by operator new, which a host or a test may have replaced by something that takes locks.
    // NOLINTNEXTLINE(cppcoreguidelines-no-malloc)
    void* grown = std::realloc(static_cast<void*>(more_), capacity * sizeof(HeldLock));
    if (grown == nullptr) {
        std::fputs("no memory to check the order of locks\n", stderr);
        std::abort();
    }
    more_ = static_cast<HeldLock*>(grown);
    moreCapacity_ = capacity;
}

void RecursiveLock::lock() {
    HeldLocks& held = HeldLocks::ofThisThread();
    held.check(*this);
    mutex_.lock();
    held.noteTaken(*this);
}

bool RecursiveLock::try_lock() { // never waits: in any order
    if (!mutex_.try_lock()) {
        return false;
    }
    HeldLocks::ofThisThread().noteTaken(*this);
    return true;
}

void RecursiveLock::unlock() {
    HeldLocks::ofThisThread().noteReleased(*this);
    mutex_.unlock();
}

void RecursiveLock::requireHeld() const noexcept {
    HeldLocks::ofThisThread().requireHeld(*this);
}

void RecursiveLock::forgetOrder() noexcept {
    if (ruleOf(rank_).use == LockUse::Nested) {
        NestedLocks::forget(*this);
    }
}

} // namespace v1
} // namespace zel
