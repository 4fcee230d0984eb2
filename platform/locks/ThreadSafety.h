// SPDX-License-Identifier: Apache-2.0
#pragma once

// What clang's thread-safety analysis (-Wthread-safety) reads; nothing for other compilers.

#if defined(__clang__)
#define ZEL_THREAD_ATTRIBUTE(x) __attribute__((x))
#else
#define ZEL_THREAD_ATTRIBUTE(x)
#endif

#define ZEL_CAPABILITY(name) ZEL_THREAD_ATTRIBUTE(capability(name))
#define ZEL_SCOPED_CAPABILITY ZEL_THREAD_ATTRIBUTE(scoped_lockable)
#define ZEL_GUARDED_BY(lock) ZEL_THREAD_ATTRIBUTE(guarded_by(lock))
#define ZEL_REQUIRES(...) ZEL_THREAD_ATTRIBUTE(requires_capability(__VA_ARGS__))
#define ZEL_NO_THREAD_SAFETY_ANALYSIS ZEL_THREAD_ATTRIBUTE(no_thread_safety_analysis)
#define ZEL_ACQUIRE(...) ZEL_THREAD_ATTRIBUTE(acquire_capability(__VA_ARGS__))
#define ZEL_RELEASE(...) ZEL_THREAD_ATTRIBUTE(release_capability(__VA_ARGS__))
