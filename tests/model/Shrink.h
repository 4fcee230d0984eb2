// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/model/Script.h"

#include <functional>

namespace zeltest {

/// A script that `fails` still accepts and from which nothing more can be taken away.
Script shrink(Script script, const std::function<bool(const Script&)>& fails);

} // namespace zeltest
