// SPDX-License-Identifier: Apache-2.0
#include "platform/Misuse.h"

#include "platform/locks/PrivateLock.h"

#include <ZelStyleKit/ZelMisuse.h>

#include <memory>
#include <utility>

namespace zel::inline v1 {
namespace {

using SharedHandler = std::shared_ptr<const ZelMisuseHandler>;

struct HandlerPlace {
    PrivateLock lock;
    SharedHandler handler ZEL_GUARDED_BY(lock);
};

HandlerPlace& handlerPlace() {
    static auto* const held = new HandlerPlace; // never destroyed: used at exit
    return *held;
}

} // namespace

void setMisuseHandler(ZelMisuseHandler handler) {
    SharedHandler shared =
        handler ? std::make_shared<const ZelMisuseHandler>(std::move(handler)) : nullptr;
    const PrivateGuard guard(handlerPlace().lock);
    handlerPlace().handler.swap(shared);
} // the guard goes first, then the handler that was replaced

void reportMisuse(std::string_view message) noexcept {
    requireNoPrivateLock();
    SharedHandler handler;
    {
        const PrivateGuard guard(handlerPlace().lock);
        handler = handlerPlace().handler;
    }
    if (handler) {
        try {
            (*handler)(message);
        } catch (...) { // NOLINT(bugprone-empty-catch): a report never changes what goes on
        }
    }
}

} // namespace zel::inline v1
