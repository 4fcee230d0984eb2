// SPDX-License-Identifier: Apache-2.0
#include "domain/StyleFamilies.h"

#include <ZelStyleKit/ZelStyle.h>

#include <new>
#include <utility>

namespace zel::inline v1 {

std::optional<std::span<Listener* const>> StyleFamilies::find(const ZelStyle& style) const {
    if (isStale_ || built_ != StylingMoment::now()) {
        return std::nullopt;
    }
    const auto found = nodes_.find(style.token().serial());
    return found == nodes_.end()
               ? std::span<Listener* const>()
               : std::span(listeners_)
                     .subspan(found->second.begin, found->second.end - found->second.begin);
}

bool StyleFamilies::beginBuilding() {
    const auto now = StylingMoment::now();
    if (std::exchange(asked_, now) != now) {
        return false;
    }
    built_ = {};
    nodes_.clear();
    roots_.clear();
    listeners_.clear();
    hasAll_ = true;
    const PrivateGuard guard(linkLock);
    isStale_ = false;
    return true;
}

// Each style is linked to its parent once, whether or not that has listeners.
void StyleFamilies::add(const std::shared_ptr<ZelStyle>& style, Listener& listener) noexcept try {
    const auto [own, isNew] = nodes_.try_emplace(style->token().serial());
    own->second.listeners.push_back(&listener);
    Node* child = isNew ? &own->second : nullptr; // to be linked
    for (auto parent = child ? style->parentStyle() : nullptr; parent;
         parent = child ? parent->parentStyle() : nullptr) {
        const auto [node, isNewParent] = nodes_.try_emplace(parent->token().serial());
        node->second.children.push_back(child);
        child = isNewParent ? &node->second : nullptr;
    }
    if (child) {
        roots_.push_back(child);
    }
} catch (const std::bad_alloc&) {
    hasAll_ = false;
}

/// Depth first, so that a style's descendants follow it. A loop: no chain is too long for the
/// stack.
void StyleFamilies::arrange(Node& root) {
    struct Step {
        Node* node;
        std::size_t next = 0; ///< among its children
    };
    std::vector<Step> path{{&root}};
    while (!path.empty()) {
        auto& [node, next] = path.back();
        if (next == 0) {
            node->begin = listeners_.size();
            listeners_.insert(listeners_.end(), node->listeners.begin(), node->listeners.end());
        }
        if (next < node->children.size()) {
            path.push_back({node->children[next++]});
        } else {
            node->end = listeners_.size();
            path.pop_back();
        }
    }
}

void StyleFamilies::endBuilding(bool isComplete) noexcept try {
    hasAll_ = hasAll_ && isComplete;
    if (hasAll_) {
        for (Node* each : roots_) {
            arrange(*each);
        }
        built_ = asked_;
        ++completions;
    }
} catch (const std::bad_alloc&) {
    hasAll_ = false;
}

} // namespace zel::inline v1
