// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

// What a host has whose sources include X11's headers, or Windows' without NOMINMAX, before ours.
// The standard library comes first here, since its headers take the macros min and max away.
#define Above 0
#define Always 2
#define Below 1
#define Bool int
#define CursorShape 0
#define DestroyAll 0
#define False 0
#define FocusIn 9
#define GrayScale 1
#define None 0L
#define Status int
#define Success 0
#define True 1
#define Unsorted 0
#define max(a, b) (((a) > (b)) ? (a) : (b))
#define min(a, b) (((a) < (b)) ? (a) : (b))
#define far
#define near
#define small char
#define interface struct
#define DELETE 0x00010000L
#define ERROR 0

#include <ZelStyleKit/ZelStyleKit.h>

namespace {

TEST(ForeignMacros, MayBeDefinedBeforeTheHeaders) {
    EXPECT_EQ(zel::NSNumber::numberWithBool(True).kind(), zel::NSNumber::Kind::Boolean);
    EXPECT_NE(zel::NSKeyValueObservingOptions::Default, zel::NSKeyValueObservingOptions::Prior);
}

} // namespace
