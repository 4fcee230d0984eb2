// SPDX-License-Identifier: Apache-2.0
#include "StyleListener.h"

#include <ZelStyleKit/NSMainQueue.h>
#include <ZelStyleKit/ZelStyle.h>

namespace zel::inline v1 {

void StyleListener::start(Handler handler) {
    handler_ = std::make_shared<const Handler>(std::move(handler));
    const auto self = shared_from_this(); // the handler may end who holds it
    registerStyleableChangeHandler([this](const auto&, const auto& style, auto) {
        if (std::this_thread::get_id() == thread_) {
            tell(style);
        } else {
            tellLater();
        }
    });
}

void StyleListener::stop() {
    handler_.reset();
    unregisterStyleableChangeHandlers();
}

// With this, whatever was to be told later has been told.
void StyleListener::tell(const std::shared_ptr<ZelStyle>& style) {
    isLate_ = false;
    if (const auto handler = handler_) {
        (*handler)(style);
    }
}

void StyleListener::tellLater() {
    if (isLate_.exchange(true)) {
        return;
    }
    NSMainQueue::mainQueue().async([weak = weak_from_this()] {
        const auto self = std::static_pointer_cast<StyleListener>(weak.lock());
        if (self && self->isLate_) {
            self->tell(ZelStyle::forStyleable(self));
        }
    });
}

} // namespace zel::inline v1
