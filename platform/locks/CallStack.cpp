// SPDX-License-Identifier: Apache-2.0
#include "platform/locks/CallStack.h"

#include <cstdint>
#include <cstdio>

#if __has_include(<execinfo.h>)
#include <execinfo.h>
#include <unistd.h>
#define ZEL_HAS_EXECINFO
#endif
#if defined(__GLIBC__)
#include <pthread.h>
#endif

namespace zel {
inline namespace v1 {
namespace {

/// What a function that keeps a frame pointer puts at it, on the processors where frames are
/// followed.
struct Frame {
    const Frame* caller;
    void* returnAddress;
};

/// The first address behind the thread's stack; 0 where it can't be known.
std::uintptr_t stackEnd() noexcept {
#if defined(__GLIBC__) && (defined(__x86_64__) || defined(__aarch64__))
    constinit thread_local std::uintptr_t end = 0;
    if (end == 0) {
        pthread_attr_t attributes;
        void* lowest = nullptr;
        std::size_t size = 0;
        if (pthread_getattr_np(pthread_self(), &attributes) == 0) {
            if (pthread_attr_getstack(&attributes, &lowest, &size) == 0) {
                end = reinterpret_cast<std::uintptr_t>(lowest) + size;
            }
            pthread_attr_destroy(&attributes);
        }
    }
    return end;
#else
    return 0;
#endif
}

void printCalls(void* const* calls, int count) noexcept {
    std::fflush(stderr);
#ifdef ZEL_HAS_EXECINFO
    if (count > 0) {
        backtrace_symbols_fd(calls, count, STDERR_FILENO);
        return;
    }
#endif
    (void)calls;
    (void)count;
    std::fputs("  (unknown)\n", stderr);
}

} // namespace

// Frames above each other on this thread's own stack only: a register that was used for something
// else is no frame, and is never followed anywhere else.
[[gnu::no_sanitize_address]] CallStack CallStack::here() noexcept {
    CallStack stack;
    const std::uintptr_t end = stackEnd();
    const auto* frame = static_cast<const Frame*>(__builtin_frame_address(0));
    for (void*& call : stack.calls_) {
        const auto at = reinterpret_cast<std::uintptr_t>(frame);
        if (at % alignof(Frame) != 0 || at >= end || end - at < sizeof(Frame)) {
            break;
        }
        call = frame->returnAddress;
        if (frame->caller <= frame) {
            break;
        }
        frame = frame->caller;
    }
    return stack;
}

void CallStack::print() const noexcept {
    int count = 0;
    while (count < static_cast<int>(calls_.size()) && calls_[static_cast<std::size_t>(count)]) {
        ++count;
    }
    printCalls(calls_.data(), count);
}

void CallStack::printPresent() noexcept {
#ifdef ZEL_HAS_EXECINFO
    std::array<void*, 64> calls{};
    printCalls(calls.data(), backtrace(calls.data(), static_cast<int>(calls.size())));
#else
    here().print();
#endif
}

} // namespace v1
} // namespace zel
