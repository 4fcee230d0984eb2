// SPDX-License-Identifier: Apache-2.0
#include "platform/objects/WeaklyKeyed.h"

#include "platform/locks/PrivateLock.h"
#include "platform/objects/Attachment.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace zel::inline v1 {
namespace {

using Watching = std::vector<std::weak_ptr<WeaklyKeyed>>;

constinit PrivateLock watchLock; // guards what watches each object

/// The maps that have an object as their key.
class Watchers final : public Attachment {
public:
    explicit Watchers(const NSObject& key) noexcept : key_(key) {}
    ~Watchers() override {
        for (const auto& each : watching_) { // nobody else knows a key that is ending
            if (const auto map = each.lock()) {
                map->keyEnded(key_);
            }
        }
    }

    void add(const std::shared_ptr<WeaklyKeyed>& map) {
        Watching ended; // weak references that lead nowhere go after the guard
        const PrivateGuard guard(watchLock);
        for (auto& each : watching_) {
            if (!each.owner_before(map) && !map.owner_before(each)) {
                return;
            }
        }
        const auto expired = std::partition(watching_.begin(), watching_.end(),
                                            [](const auto& each) { return !each.expired(); });
        ended.assign(std::make_move_iterator(expired), std::make_move_iterator(watching_.end()));
        watching_.erase(expired, watching_.end());
        watching_.push_back(map);
    }

private:
    const NSObject& key_;
    Watching watching_;
};

} // namespace

WeaklyKeyed::~WeaklyKeyed() = default;

void WeaklyKeyed::watch(const NSObject& key) {
    Attachment::of<Watchers>(key).add(shared_from_this());
}

} // namespace zel::inline v1
