// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <utility>

namespace zeltest {

/// Runs a function when the last copy of what holds it ends.
class AtEnd {
public:
    explicit AtEnd(std::function<void()> then) : then_(std::move(then)) {}
    AtEnd(const AtEnd&) = delete;
    AtEnd& operator=(const AtEnd&) = delete;
    ~AtEnd() { then_(); }

private:
    std::function<void()> then_;
};

} // namespace zeltest
