// SPDX-License-Identifier: Apache-2.0
#include "style/AttributeKeys.h"

#include <ZelStyleKit/ZelStyleAttributes.h>

#include <memory>
#include <unordered_map>

namespace zel::inline v1 {
namespace {

using Indices = std::unordered_map<std::string_view, AttributeIndex>;

Indices* makeIndices() {
    auto made = std::make_unique<Indices>();
    for (AttributeIndex index = 0; index < ZelStyleAttributeCount; ++index) {
        made->emplace(ZelStyleAttributeKeyOf(static_cast<ZelStyleAttribute>(index)), index);
    }
    return made.release();
}

} // namespace

std::optional<AttributeIndex> indexOfAttribute(std::string_view key) {
    static const Indices& indices = *makeIndices(); // never destroyed: styles may end at exit
    const auto found = indices.find(key);
    return found == indices.end() ? std::nullopt : std::optional(found->second);
}

} // namespace zel::inline v1
