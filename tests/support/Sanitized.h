// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace zeltest {

/// Whether a sanitizer watches this build, which takes much memory for itself.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool underSanitizer = true;
#elif defined(__has_feature)
inline constexpr bool underSanitizer =
    __has_feature(address_sanitizer) || __has_feature(thread_sanitizer);
#else
inline constexpr bool underSanitizer = false;
#endif

/// Whether it is the thread sanitizer.
#if defined(__SANITIZE_THREAD__)
inline constexpr bool underThreadSanitizer = true;
#elif defined(__has_feature)
inline constexpr bool underThreadSanitizer = __has_feature(thread_sanitizer);
#else
inline constexpr bool underThreadSanitizer = false;
#endif

} // namespace zeltest
