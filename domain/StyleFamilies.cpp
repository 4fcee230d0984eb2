// SPDX-License-Identifier: Apache-2.0
#include "domain/StyleFamilies.h"

#include <ZelStyleKit/ZelStyle.h>

#include <new>
#include <utility>

namespace zel::inline v1 {

bool StyleFamilies::beginBuilding() {
    const auto now = StylingMoment::now();
    if (std::exchange(asked_, now) != now) {
        return false;
    }
    nodes_.clear();
    built_ = {};
    hasAll_ = true;
    const PrivateGuard guard(linkLock);
    isStale_ = false;
    return true;
}

// Each style is linked to its parent once, whether or not that has listeners.
void StyleFamilies::add(const std::shared_ptr<ZelStyle>& style, Listener& listener) noexcept try {
    const auto [own, isNew] = nodes_.try_emplace(style->token().serial());
    own->second.listeners.push_back(&listener);
    std::uint64_t child = style->token().serial();
    auto parent = isNew ? style->parentStyle() : nullptr;
    while (parent) {
        const auto [node, isNewParent] = nodes_.try_emplace(parent->token().serial());
        node->second.children.push_back(child);
        child = parent->token().serial();
        parent = isNewParent ? parent->parentStyle() : nullptr;
    }
} catch (const std::bad_alloc&) {
    hasAll_ = false;
}

void StyleFamilies::endBuilding(bool isComplete) noexcept {
    hasAll_ = hasAll_ && isComplete;
    if (hasAll_) {
        built_ = asked_;
        ++completions;
    }
}

} // namespace zel::inline v1
