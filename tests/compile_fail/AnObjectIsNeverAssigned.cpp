// SPDX-License-Identifier: Apache-2.0
// Assigning would give one object another's identity.
#include <ZelStyleKit/ZelStyleKit.h>

void use(zel::NSView& one, const zel::NSView& other);
void use(zel::NSView& one, const zel::NSView& other) {
#ifdef ZEL_REFUSED
    one = other;
#endif
    static_cast<void>(one);
    static_cast<void>(other);
}
