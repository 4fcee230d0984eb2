// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/locks/RecursiveLock.h"

namespace zel {
inline namespace v1 {

/// The process's one outermost lock, recursive: held by whatever calls callbacks while it holds
/// other locks, that is by style updates and by what adds their observers, by notifications that
/// have a listener, by the set-up of the main styles, and by the reset of the registry of
/// domains; and by registrations, whose call would else mix with a notification's.
///
/// An update takes its style's lock and then handler tables; a handler, called with its table
/// locked, may update a style: the same locks the other way round. Behind the gate only one thread
/// at a time is in either, so that two can't wait for each other. Reading, writing values and
/// unregistering don't pass it; nor does destroying, but for a domain that follows the system and
/// has listeners, which tells them when it ends.
class DeliveryGate {
public:
    DeliveryGate() : guard_(lock()) {}

private:
    static RecursiveLock& lock();
    RecursiveGuard guard_;
};

} // namespace v1
} // namespace zel
