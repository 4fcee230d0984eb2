// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tools/zelstyle/watch/SelfPipe.h"

namespace zel::tool {

class AppearanceSource;
class Output;

/// The process's event loop: drains the main queue when it asks for it, lets a source work when it
/// can, and ends with the source, with SIGINT or SIGTERM, or when nobody reads the output any more.
/// Owns: the main queue's wake hook and what the two signals do, as long as it lives; one at a
/// time. Threads: the main thread. Failure: construction raises `std::system_error`; the loop
/// passes on what a handler or the source raises.
class EventLoop {
public:
    EventLoop();
    ~EventLoop();
    EventLoop(const EventLoop&) = delete;
    EventLoop& operator=(const EventLoop&) = delete;

    /// Answers the exit code.
    int run(AppearanceSource& source, const Output& output);

private:
    SelfPipe wake_;
    SelfPipe stop_;
};

} // namespace zel::tool
