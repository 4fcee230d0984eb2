// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>

namespace zel {
inline namespace v1 {

/// The lock of the weak references at an address; a few locks serve all, so that a reference costs
/// no lock of its own. Innermost: nothing is called while it is held.
std::mutex& weakReferenceLock(const void* address) noexcept;

/// A weak reference that any thread reads and writes.
template <class T>
class AtomicWeakReference {
public:
    [[nodiscard]] std::shared_ptr<T> load() const {
        const std::scoped_lock guard(weakReferenceLock(this));
        return reference_.lock();
    }
    void store(const std::shared_ptr<T>& object) {
        std::weak_ptr<T> reference = object;
        const std::scoped_lock guard(weakReferenceLock(this));
        reference_.swap(reference);
    }

private:
    std::weak_ptr<T> reference_; // guarded by weakReferenceLock(this)
};

} // namespace v1
} // namespace zel
