// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <mutex>
#include <utility>

namespace zel::inline v1 {

/// A function that a host may set, to be asked instead of the library's own.
/// Owns: the function. Threads: any, in the function itself as well, which is called and destroyed
/// with no lock held: whoever asks holds it meanwhile.
template <class Function>
class HostFunction {
public:
    /// The function that is set; nil where none is.
    [[nodiscard]] std::shared_ptr<const Function> get() const {
        const std::scoped_lock guard(mutex_);
        return function_;
    }
    void set(Function function) {
        std::shared_ptr<const Function> former; // ends after the guard does
        if (function) {
            former = std::make_shared<const Function>(std::move(function));
        }
        const std::scoped_lock guard(mutex_);
        function_.swap(former);
    }

private:
    mutable std::mutex mutex_;
    std::shared_ptr<const Function> function_; // guarded by the mutex
};

} // namespace zel::inline v1
