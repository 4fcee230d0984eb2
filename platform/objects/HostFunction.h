// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/locks/PrivateLock.h"

#include <memory>
#include <utility>

namespace zel::inline v1 {

/// A function that a host may set.
/// Owns: the function. Threads: any, in the function itself as well, which is called and destroyed
/// with no lock held: whoever calls it holds it meanwhile.
template <class Function>
class HostFunction {
public:
    /// The function that is set; nil where none is. To be called where it is kept.
    [[nodiscard]] std::shared_ptr<const Function> get() const {
        const PrivateGuard guard(lock_);
        return function_;
    }
    /// A copy of it, empty where none is set.
    [[nodiscard]] Function copy() const {
        const auto held = get();
        return held ? *held : Function();
    }
    void set(Function function) {
        std::shared_ptr<const Function> former; // ends after the guard does
        if (function) {
            former = std::make_shared<const Function>(std::move(function));
        }
        const PrivateGuard guard(lock_);
        function_.swap(former);
    }

private:
    mutable PrivateLock lock_;
    std::shared_ptr<const Function> function_ ZEL_GUARDED_BY(lock_);
};

} // namespace zel::inline v1
