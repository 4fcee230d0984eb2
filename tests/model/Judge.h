// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/model/Script.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace zeltest {

const Vocabulary& vocabulary();

/// How a script went on both sides.
struct Verdict {
    std::uint64_t played = 0;          // operations, those of callbacks included
    std::optional<std::size_t> parted; // the step after which the sides differ
    std::string difference;            // the two sides' entries from there on
};

/// Plays a script on the library and on the model, step by step, and compares all that can be
/// observed after each.
Verdict judge(const Script& script);

/// A script that `differs` still accepts and from which nothing more can be taken away.
Script shrink(Script script, const std::function<bool(const Script&)>& differs);

} // namespace zeltest
