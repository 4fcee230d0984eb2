// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/NSObject.h>

#include "platform/objects/ObjectState.h"

#include <stdexcept>

namespace zel {
inline namespace v1 {

NSObject::~NSObject() {
    ObjectState::end(*this);
}

std::shared_ptr<NSObject> NSObject::init() {
    return shared_from_this();
}

void NSObject::styleChangedWithEvent(const std::shared_ptr<ZelStyle>& /*style*/,
                                     ZelStyleChangeEvent /*event*/) {
    throw std::logic_error("this object does not answer style:changedWithEvent:");
}

void NSObject::observeValueForKeyPath(std::string_view /*keyPath*/, NSObject& /*ofObject*/,
                                      const NSKeyValueChange& /*change*/, const void* /*context*/) {
}

} // namespace v1
} // namespace zel
