// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/ZelStyleChangeEvent.h>

#include <cstdint>
#include <deque>
#include <memory>
#include <utility>

namespace zel::inline v1 {

/// One owner's change handlers, in the order of registration. Most owners have one; later ones are
/// kept aside, where adding one moves none: one may be running.
class ChangeHandlers {
public:
    /// Adds a handler and answers where it stays for as long as it is kept. `number` rises.
    const ZelStyleChangeHandler& append(ZelStyleChangeHandler handler, std::uint64_t number) {
        if (!first_) {
            first_ = std::move(handler);
            return first_;
        }
        if (!later_) {
            later_ = std::make_unique<std::deque<Later>>();
        }
        return later_->emplace_back(std::move(handler), number).handler;
    }

    [[nodiscard]] bool isEmpty() const noexcept { return !first_; }
    [[nodiscard]] const ZelStyleChangeHandler& first() const noexcept { return first_; }
    [[nodiscard]] bool hasLater() const noexcept { return later_ != nullptr; }
    /// How many were added after the first, and before `bound`.
    [[nodiscard]] std::size_t laterBefore(std::uint64_t bound) const noexcept {
        std::size_t count = later_ ? later_->size() : 0;
        while (count > 0 && (*later_)[count - 1].number >= bound) {
            --count;
        }
        return count;
    }
    [[nodiscard]] const ZelStyleChangeHandler& later(std::size_t index) const noexcept {
        return (*later_)[index].handler;
    }

private:
    struct Later {
        Later(ZelStyleChangeHandler added, std::uint64_t rising)
            : handler(std::move(added)), number(rising) {}
        ZelStyleChangeHandler handler;
        std::uint64_t number;
    };

    ZelStyleChangeHandler first_;
    std::unique_ptr<std::deque<Later>> later_;
};

} // namespace zel::inline v1
