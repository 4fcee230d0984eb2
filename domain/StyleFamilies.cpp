// SPDX-License-Identifier: Apache-2.0
#include "domain/StyleFamilies.h"

#include <ZelStyleKit/ZelStyle.h>

#include <new>
#include <utility>

namespace zel::inline v1 {

std::uint64_t StyleFamilies::beginBuilding() {
    const auto now = StylingMoment::now();
    if (std::exchange(lastFullWalk_, now) != now) {
        return 0;
    }
    built_ = {};
    nodes_.clear();
    const PrivateGuard guard(linkLock);
    isStale_ = false;
    return ++building_;
}

// Each style is linked to its parent once, whether or not that has listeners.
void StyleFamilies::add(const std::shared_ptr<ZelStyle>& style, const Listener& listener) noexcept
    try {
    const auto [own, isNew] = nodes_.try_emplace(style->token().serial());
    own->second.listeners.push_back(&listener);
    const Node* child = isNew ? &own->second : nullptr; // to be linked
    for (auto each = style; child;) {
        each = each->parentStyle();
        if (!each) {
            return;
        }
        const auto [parent, isNewParent] = nodes_.try_emplace(each->token().serial());
        parent->second.children.push_back(child);
        child = isNewParent ? &parent->second : nullptr;
    }
} catch (const std::bad_alloc&) {
    ++building_;
}

void StyleFamilies::endBuilding(std::uint64_t building) noexcept {
    if (building == building_) {
        built_ = lastFullWalk_;
        ++completions;
    }
}

} // namespace zel::inline v1
