// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

namespace zel {
inline namespace v1 {

class ZelStyle;
class ZelStyleDomain;
class ZelStyleScheme;

// What the style model asks of the domains above it, which it knows by name only.

/// Has a domain deliver an accepted update: event 1, forced, for that style alone.
void deliverStyleUpdate(const std::shared_ptr<ZelStyleDomain>& domain,
                        const std::shared_ptr<ZelStyle>& style);

/// A domain's current scheme; nil for no domain.
std::shared_ptr<ZelStyleScheme> currentSchemeOf(const std::shared_ptr<ZelStyleDomain>& domain);

} // namespace v1
} // namespace zel
