// SPDX-License-Identifier: Apache-2.0
#include "tools/zelstyle/watch/EventLoop.h"

#include "tools/zelstyle/terminal/Output.h"
#include "tools/zelstyle/watch/AppearanceSource.h"

#include <ZelStyleKit/NSMainQueue.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <climits>
#include <csignal>
#include <optional>
#include <system_error>

#include <poll.h>
#include <unistd.h>

namespace zel::tool {
namespace {

// Read by the signal handler, which can be given nothing.
const SelfPipe* stopPipe = nullptr;

void requestStop(int) {
    stopPipe->signal();
}

void onStopSignals(void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler; // without SA_RESTART: a wait ends
    ::sigaction(SIGINT, &action, nullptr);
    ::sigaction(SIGTERM, &action, nullptr);
}

/// poll(2)'s unit is the millisecond; rounded up, so that the time has come when the wait is over.
int pollTimeout(const std::optional<std::chrono::microseconds>& limit) {
    if (!limit) {
        return -1;
    }
    const auto whole = std::chrono::ceil<std::chrono::milliseconds>(*limit).count();
    return static_cast<int>(std::clamp<long long>(whole, 0, INT_MAX));
}

enum : std::size_t { StopEntry, WakeEntry, OutputEntry, SourceEntry, EntryCount };

bool isReady(const pollfd& entry) {
    return entry.revents != 0;
}

} // namespace

EventLoop::EventLoop() {
    stopPipe = &stop_;
    onStopSignals(requestStop);
    NSMainQueue::mainQueue().setWakeHook([this] { wake_.signal(); });
    wake_.signal(); // for what was queued before
}

EventLoop::~EventLoop() {
    NSMainQueue::mainQueue().setWakeHook(nullptr);
    onStopSignals(SIG_DFL);
    stopPipe = nullptr;
}

int EventLoop::run(AppearanceSource& source, const Output& output) {
    // No events are wanted of the output: that its reader has gone is told without being asked for.
    std::array<pollfd, EntryCount> entries{pollfd{stop_.readEnd(), POLLIN, 0},
                                           pollfd{wake_.readEnd(), POLLIN, 0},
                                           pollfd{STDOUT_FILENO, 0, 0}, pollfd{-1, 0, 0}};
    bool goesOn = true;
    while (goesOn && !output.hasFailed()) {
        entries[SourceEntry] = {source.fileDescriptor(), source.events(), 0};
        if (::poll(entries.data(), entries.size(), pollTimeout(source.nextTimeout())) < 0) {
            if (errno != EINTR) {
                throw std::system_error(errno, std::generic_category(), "cannot wait for events");
            }
            continue;
        }
        if (isReady(entries[StopEntry]) || isReady(entries[OutputEntry])) {
            break;
        }
        if (isReady(entries[WakeEntry])) {
            wake_.clear(); // first: a task queued from now on wakes anew
            NSMainQueue::mainQueue().drain();
        }
        goesOn = source.process(entries[SourceEntry].revents);
    }
    const int code = output.report();
    return code != ExitDone ? code : source.exitCode();
}

} // namespace zel::tool
