// SPDX-License-Identifier: Apache-2.0
#include "tests/model/Shrink.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace zeltest {

namespace {

class Shrinking {
public:
    Shrinking(Script script, const std::function<bool(const Script&)>& fails)
        : script_(std::move(script)), fails_(fails) {}

    Script run() {
        thinAll();
        simplifyAll();
        thinAll(); // simpler arguments may do without what made things for the former ones
        return std::move(script_);
    }

private:
    /// Takes away what can be missed, in ever smaller pieces. Answers whether anything went.
    bool thin(std::vector<Operation>& list) {
        const auto before = list.size();
        for (std::size_t piece = std::max<std::size_t>(before / 2, 1); piece > 0; piece /= 2) {
            for (std::size_t at = 0; at < list.size();) {
                auto whole = list;
                const auto from = list.begin() + static_cast<std::ptrdiff_t>(at);
                list.erase(from,
                           from + static_cast<std::ptrdiff_t>(std::min(piece, list.size() - at)));
                if (!fails_(script_)) {
                    list = std::move(whole);
                    at += piece;
                }
            }
        }
        return list.size() < before;
    }

    void thinAll() {
        bool thinner = true;
        while (thinner) {
            thinner = thin(script_.steps);
            for (auto& program : script_.programs) {
                thinner = thin(program) || thinner;
            }
        }
    }
    void simplifyAll() {
        simplify(script_.steps);
        for (auto& program : script_.programs) {
            simplify(program);
        }
    }

    void simplify(std::vector<Operation>& list) {
        for (Operation& each : list) {
            for (unsigned& argument : each.arguments) {
                const unsigned found = argument;
                for (argument = 0; argument < found && !fails_(script_); ++argument) {
                }
            }
        }
    }

    Script script_;
    const std::function<bool(const Script&)>& fails_;
};

} // namespace

Script shrink(Script script, const std::function<bool(const Script&)>& fails) {
    return Shrinking(std::move(script), fails).run();
}

} // namespace zeltest
