// SPDX-License-Identifier: Apache-2.0
#include "domain/StyleForest.h"

#include <ZelStyleKit/ZelStyle.h>

namespace zel {
inline namespace v1 {

void StyleForest::clear() noexcept {
    nodes_.clear();
    placesBySerial_.clear();
}

std::uint32_t StyleForest::add(const std::shared_ptr<ZelStyle>& style) {
    std::uint32_t first = none;
    std::uint32_t below = none;
    for (auto each = style; each; each = each->parentStyle()) {
        const auto [found, isNew] = placesBySerial_.try_emplace(
            each->token().serial(), static_cast<std::uint32_t>(nodes_.size()));
        const std::uint32_t place = found->second;
        if (isNew) {
            nodes_.emplace_back();
        }
        if (below == none) {
            first = place;
        } else {
            nodes_[below].parent = place;
            nodes_[below].nextSibling = nodes_[place].firstChild;
            nodes_[place].firstChild = below;
        }
        if (!isNew) {
            break;
        }
        below = place;
    }
    return first;
}

void StyleForest::number() {
    std::uint32_t next = 0;
    for (std::uint32_t place = 0; place < nodes_.size(); ++place) {
        if (nodes_[place].parent == none) {
            numberTree(place, next);
        }
    }
}

// Parents before children, a loop however deep they are.
void StyleForest::numberTree(std::uint32_t root, std::uint32_t& next) {
    std::uint32_t place = root;
    for (;;) {
        nodes_[place].begin = next++;
        if (nodes_[place].firstChild != none) {
            place = nodes_[place].firstChild;
            continue;
        }
        for (;;) {
            nodes_[place].end = next;
            if (place == root) {
                return;
            }
            if (nodes_[place].nextSibling != none) {
                place = nodes_[place].nextSibling;
                break;
            }
            place = nodes_[place].parent;
        }
    }
}

StyleForest::Family StyleForest::familyOf(const ZelStyle& style) const {
    const auto found = placesBySerial_.find(style.token().serial());
    if (found == placesBySerial_.end()) {
        return {};
    }
    const Node& node = nodes_[found->second];
    return {node.begin, node.end};
}

} // namespace v1
} // namespace zel
