// SPDX-License-Identifier: Apache-2.0
#include "domain/StyleFamilies.h"

#include <ZelStyleKit/ZelStyle.h>

#include <new>
#include <utility>

namespace zel::inline v1 {

const StyleFamilies::Listeners* StyleFamilies::find(const ZelStyle& style) const {
    static const Listeners none;
    if (isStale_ || built_ != StylingMoment::now()) {
        return nullptr;
    }
    const auto found = families_.find(style.token().serial());
    return found == families_.end() ? &none : &found->second;
}

bool StyleFamilies::beginBuilding() {
    const auto now = StylingMoment::now();
    if (std::exchange(asked_, now) != now) {
        return false;
    }
    families_.clear();
    built_ = {};
    hasAll_ = true;
    const PrivateGuard guard(linkLock);
    isStale_ = false;
    return true;
}

void StyleFamilies::add(const std::shared_ptr<ZelStyle>& style, Listener& listener) noexcept try {
    for (auto each = style; each; each = each->parentStyle()) {
        families_[each->token().serial()].push_back(&listener);
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
