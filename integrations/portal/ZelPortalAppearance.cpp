// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/ZelPortalAppearance.h>

#include "PortalFollower.h"

#include <poll.h>

#include <algorithm>
#include <utility>

namespace zel::inline v1 {
namespace {

// Far longer than the first answer may take, and short enough to be counted in any unit.
constexpr std::chrono::milliseconds longestWait = std::chrono::hours{1};

} // namespace

ZelPortalAppearance::ZelPortalAppearance() : follower_(std::make_shared<PortalFollower>()) {}

ZelPortalAppearance::~ZelPortalAppearance() {
    stop();
}

// An operation that calls the host keeps the follower: the host may destroy this object meanwhile.

void ZelPortalAppearance::start(ZelPortalOptions options) {
    const auto follower = follower_;
    follower->start(std::move(options));
}

void ZelPortalAppearance::stop() noexcept {
    follower_->stop();
}

int ZelPortalAppearance::fileDescriptor() const noexcept {
    return follower_->fileDescriptor();
}

short ZelPortalAppearance::events() const noexcept {
    return follower_->events();
}

std::optional<std::chrono::microseconds> ZelPortalAppearance::nextTimeout() const noexcept {
    return follower_->nextTimeout();
}

void ZelPortalAppearance::process() {
    const auto follower = follower_;
    follower->process();
}

ZelPortalStatus ZelPortalAppearance::waitForFirstAnswer(std::chrono::milliseconds limit) {
    using Clock = std::chrono::steady_clock;
    const auto follower = follower_;
    const auto end = Clock::now() + std::min(limit, longestWait);
    while (follower->status() == ZelPortalStatus::Connecting) {
        auto left = std::chrono::ceil<std::chrono::microseconds>(end - Clock::now());
        if (left.count() <= 0) {
            break;
        }
        left = std::min(left, follower->nextTimeout().value_or(left));
        const auto milliseconds = std::chrono::ceil<std::chrono::milliseconds>(left).count();
        pollfd waited{follower->fileDescriptor(), follower->events(), 0};
        // An interruption by a signal is one more round.
        ::poll(&waited, 1, static_cast<int>(milliseconds));
        follower->process();
    }
    return follower->status();
}

void ZelPortalAppearance::refresh() noexcept {
    follower_->refresh();
}

ZelPortalStatus ZelPortalAppearance::status() const noexcept {
    return follower_->status();
}

std::string ZelPortalAppearance::reason() const {
    return follower_->reason();
}

bool ZelPortalAppearance::busHasAnswered() const noexcept {
    return follower_->busHasAnswered();
}

std::optional<std::uint32_t> ZelPortalAppearance::colorScheme() const noexcept {
    return follower_->colorScheme();
}

} // namespace zel::inline v1
