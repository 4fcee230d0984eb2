// SPDX-License-Identifier: Apache-2.0
#pragma once

// Marks what a shared build of the library makes visible; everything else stays hidden.
#if defined(ZELSTYLEKIT_STATIC)
#define ZEL_EXPORT
#elif defined(_WIN32)
#if defined(ZELSTYLEKIT_BUILDING)
#define ZEL_EXPORT __declspec(dllexport)
#else
#define ZEL_EXPORT __declspec(dllimport)
#endif
#else
#define ZEL_EXPORT __attribute__((visibility("default")))
#endif
