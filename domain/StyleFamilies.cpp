// SPDX-License-Identifier: Apache-2.0
#include "domain/StyleFamilies.h"

#include <ZelStyleKit/ZelStyle.h>

namespace zel::inline v1 {

void StyleFamilies::beginBuilding() noexcept {
    isBuilding_ = true;
    isStale_ = false;
    built_ = {};
    nodes_.clear();
}

// Each style is linked to its parent once, whether or not that has listeners.
void StyleFamilies::add(const std::shared_ptr<ZelStyle>& style, Listener& listener) {
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
}

void StyleFamilies::endBuilding(bool isComplete) noexcept {
    isBuilding_ = false;
    built_ = isComplete ? walked_ : StylingMoment();
}

} // namespace zel::inline v1
