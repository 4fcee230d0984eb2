// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/Export.h>

#include <stdexcept>

namespace zel::inline v1 {

/// Raised where nil is given for what must not be nil: an attribute key, a handler, a provider, a
/// mode.
class ZEL_EXPORT ZelInvalidArgument : public std::invalid_argument {
public:
    using std::invalid_argument::invalid_argument;
    ~ZelInvalidArgument() override;
};

/// Raised by a walk over a style's update observers, or over the registry of default value
/// providers, whose table a callback changed.
class ZEL_EXPORT ZelEnumerationMutation : public std::logic_error {
public:
    using std::logic_error::logic_error;
    ~ZelEnumerationMutation() override;
};

} // namespace zel::inline v1
