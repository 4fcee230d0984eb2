// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace zel::inline v1 {

/// What somebody writes who needs listeners and nothing else: a vector of weak owners and
/// functions, walked with lock and call. It resolves no style and survives no change while it is
/// walked. Refers to: the owners, weakly. Threads: one.
template <class Owner>
class Baseline {
public:
    using Handler = std::function<void(const std::shared_ptr<Owner>& owner, int event)>;

    void add(const std::shared_ptr<Owner>& owner, Handler handler) {
        listeners_.push_back({owner, std::move(handler)});
    }

    void notify(int event) const {
        for (const Listener& listener : listeners_) {
            if (const auto owner = listener.owner.lock()) {
                listener.handler(owner, event);
            }
        }
    }

private:
    struct Listener {
        std::weak_ptr<Owner> owner;
        Handler handler;
    };
    std::vector<Listener> listeners_;
};

} // namespace zel::inline v1
