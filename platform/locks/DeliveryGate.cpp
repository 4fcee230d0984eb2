// SPDX-License-Identifier: Apache-2.0
#include "platform/locks/DeliveryGate.h"

namespace zel {
inline namespace v1 {

RecursiveLock& DeliveryGate::lock() {
    static auto* const lock =
        new RecursiveLock(LockRank::DeliveryGate); // never destroyed: domains may end at exit
    return *lock;
}

} // namespace v1
} // namespace zel
