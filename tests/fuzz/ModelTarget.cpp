// SPDX-License-Identifier: Apache-2.0
// The library beside the plain model of it, tests/model. An input is a script: what callbacks do,
// then steps, six bytes for each operation; see tests/model/Script.cpp. model_player plays an input
// by itself and says more about it.
#include "tests/fuzz/Require.h"
#include "tests/model/Judge.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace zeltest;
    [[maybe_unused]] static const bool isSetUp = (setUp(true), true);
    const Verdict verdict =
        judge(scriptOf({reinterpret_cast<const char*>(data), size}), Sides::Both);
    zelfuzz::require(verdict.difference.empty(), "both sides agree", verdict.difference);
    return 0;
}
