// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/Export.h>

namespace zel::inline v1 {

/// The library's version number.
extern ZEL_EXPORT const double ZelStyleKitVersionNumber;

} // namespace zel::inline v1
