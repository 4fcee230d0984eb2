// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace zel::tool {

/// Parses the arguments, runs the command they name and answers its exit code. Arguments that ask
/// for what there is not get one line on standard error.
int runCommandLine(int argc, char** argv);

} // namespace zel::tool
