// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>

namespace zel_tests {

/// Functions of the system's that this program replaces by ones that pass on to it.
enum class SystemCall { Flock, Fstat, Fsync, Mkdir, Open, Read, Readlink, Write, Count };

/// Stands before one of them while it lives; one at a time for each. It is asked before each call
/// and answers the error that the call is to fail with, or 0 to have it go on to the system. It is
/// not asked about the calls that it makes itself.
class Intervention {
public:
    using Ask = std::function<int()>;
    /// Is told the descriptor; -1 where the call names a path.
    using AskOfDescriptor = std::function<int(int descriptor)>;

    Intervention(SystemCall call, const Ask& ask);
    Intervention(SystemCall call, AskOfDescriptor ask);
    ~Intervention();
    Intervention(const Intervention&) = delete;
    Intervention& operator=(const Intervention&) = delete;

private:
    SystemCall call_;
};

} // namespace zel_tests
