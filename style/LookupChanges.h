// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/locks/ChangeCounter.h"

namespace zel::inline v1 {

/// Counts whatever may make a look-up find another style, or a style have other ancestors: a
/// scheme's styles or the current scheme changed, a domain was made or removed, a style got another
/// parent or ended.
inline constinit ChangeCounter lookupChanges;

} // namespace zel::inline v1
