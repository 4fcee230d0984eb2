// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace zeltest {

/// Whether a sanitizer watches this build, which takes much memory for itself.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool kSanitized = true;
#elif defined(__has_feature)
inline constexpr bool kSanitized =
    __has_feature(address_sanitizer) || __has_feature(thread_sanitizer);
#else
inline constexpr bool kSanitized = false;
#endif

/// Whether it is the thread sanitizer.
#if defined(__SANITIZE_THREAD__)
inline constexpr bool kThreadSanitized = true;
#elif defined(__has_feature)
inline constexpr bool kThreadSanitized = __has_feature(thread_sanitizer);
#else
inline constexpr bool kThreadSanitized = false;
#endif

} // namespace zeltest
