// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>

namespace zeltest {

/// The shortest of some durations, in milliseconds: whatever else the machine does meanwhile only
/// adds to them.
class Fastest {
public:
    void add(long milliseconds) { value_ = std::min(value_, milliseconds); }
    /// An hour, as long as there is none.
    [[nodiscard]] long value() const { return value_; }

private:
    long value_ = 3600000;
};

} // namespace zeltest
