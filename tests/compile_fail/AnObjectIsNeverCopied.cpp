// SPDX-License-Identifier: Apache-2.0
// An object is who it is: listeners and the last delivered style belong to this one.
#include <ZelStyleKit/ZelStyleKit.h>

void use(const zel::NSObject& object);
void use(const zel::NSObject& object) {
#ifdef ZEL_REFUSED
    const zel::NSObject copy(object);
#else
    const zel::NSObject& copy(object);
#endif
    static_cast<void>(copy);
}
