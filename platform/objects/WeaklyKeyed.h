// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/NSObject.h>

#include <memory>

namespace zel::inline v1 {

/// What keys something by objects that it holds weakly, and is notified when one of them ends.
/// Made by `std::make_shared`; objects refer to it weakly.
class WeaklyKeyed : public std::enable_shared_from_this<WeaklyKeyed> {
public:
    WeaklyKeyed() = default;
    WeaklyKeyed(const WeaklyKeyed&) = delete;
    WeaklyKeyed& operator=(const WeaklyKeyed&) = delete;
    virtual ~WeaklyKeyed();

    /// Called by the destructor of a key, with no lock held.
    virtual void keyEnded(const NSObject& key) noexcept = 0;

protected:
    /// Has the key call `keyEnded` when it ends; once is enough.
    void watch(const NSObject& key);
};

} // namespace zel::inline v1
