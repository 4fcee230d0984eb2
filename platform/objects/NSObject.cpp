// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/NSObject.h>

#include "platform/objects/Attachment.h"

namespace zel::inline v1 {

NSObject::~NSObject() {
    Attachment::destroyAll(*this);
}

std::shared_ptr<NSObject> NSObject::init() {
    return shared_from_this();
}

void NSObject::observeValueForKeyPath(std::string_view /*keyPath*/, NSObject& /*ofObject*/,
                                      const NSKeyValueChange& /*change*/, const void* /*context*/) {
}

Attachment::~Attachment() = default;

Attachment& Attachment::attach(const NSObject& object, std::unique_ptr<Attachment> made,
                               const void* kind) {
    made->kind_ = kind;
    Attachment* first = head(object);
    do {
        if (Attachment* present = find(first, kind)) {
            return *present;
        }
        made->next_ = first;
    } while (
        !object.attachments_.compare_exchange_weak(first, made.get(), std::memory_order_acq_rel));
    return *made.release();
}

// One by one, since destroying one may run a host's code, which then finds only the others.
void Attachment::destroyAll(NSObject& object) noexcept {
    while (Attachment* first = head(object)) {
        object.attachments_.store(first->next_, std::memory_order_release);
        delete first;
    }
}

} // namespace zel::inline v1
