// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/ZelExceptions.h>
#include <ZelStyleKit/ZelStyleVersion.h>

namespace zel::inline v1 {

const double ZelStyleKitVersionNumber = 1.0;

ZelInvalidArgument::~ZelInvalidArgument() = default;
ZelEnumerationMutation::~ZelEnumerationMutation() = default;

} // namespace zel::inline v1
