// SPDX-License-Identifier: Apache-2.0
// Only an object under the root class tells the tables keyed by it when it ends.
#include <ZelStyleKit/ZelStyleKit.h>

#ifdef ZEL_REFUSED
struct Plain {};
#else
class Plain : public zel::NSObject {};
#endif

std::shared_ptr<Plain> makePlain();
std::shared_ptr<Plain> makePlain() {
    return zel::alloc<Plain>();
}
