// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/support/Styling.h"

#include <ostream>

namespace zeltest {

/// One call of a listener: which one, with which style, why.
struct StyleCall {
    std::string listener;
    std::shared_ptr<zel::ZelStyle> style;
    std::uint64_t event = 0;

    friend bool operator==(const StyleCall&, const StyleCall&) = default;
    friend std::ostream& operator<<(std::ostream& out, const StyleCall& call) {
        return out << call.listener << " event " << call.event << " style "
                   << zel::ZelStyleToken(call.style).serial();
    }
};

using StyleCalls = std::vector<StyleCall>;
using Names = std::vector<std::string>;

/// Writes down the calls of listeners, in order. Outlives every listener that it made.
class Recorder {
public:
    StyleCalls calls;

    /// A change handler that records under a name, then does what else it was given to do.
    zel::ZelStyleChangeHandler handler(std::string name, std::function<void()> then = nullptr) {
        return [this, name = std::move(name), then = std::move(then)](
                   const std::shared_ptr<zel::NSObject>&,
                   const std::shared_ptr<zel::ZelStyle>& style, zel::ZelStyleChangeEvent event) {
            calls.push_back({name, style, event});
            if (then) {
                then();
            }
        };
    }
    /// The same for what a change handler object does.
    OnStyleChange objectHandler(std::string name, std::function<void()> then = nullptr) {
        return [this, name = std::move(name), then = std::move(then)](
                   const std::shared_ptr<zel::ZelStyle>& style, zel::ZelStyleChangeEvent event) {
            calls.push_back({name, style, event});
            if (then) {
                then();
            }
        };
    }

    /// What was recorded since the last time.
    StyleCalls take() { return std::exchange(calls, {}); }
    /// Who was called since the last time.
    Names takeNames() {
        Names names;
        for (const StyleCall& call : take()) {
            names.push_back(call.listener);
        }
        return names;
    }
};

} // namespace zeltest
