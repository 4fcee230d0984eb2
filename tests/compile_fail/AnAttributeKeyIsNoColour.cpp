// SPDX-License-Identifier: Apache-2.0
// A typed accessor takes a colour; the name of one is a mistake that the compiler finds.
#include <ZelStyleKit/ZelStyleKit.h>

void use(zel::ZelStyle& style);
void use(zel::ZelStyle& style) {
#ifdef ZEL_REFUSED
    style.setAccentColor(zel::ZelStyleAttributeKeyBlueColor);
#else
    style.setAccentColor(style.blueColor());
#endif
}
