// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/Export.h>

#include <compare>
#include <string>
#include <string_view>

namespace zel::inline v1 {

/// A version of the host system.
struct NSOperatingSystemVersion {
    long majorVersion = 0;
    long minorVersion = 0;
    long patchVersion = 0;
    friend auto operator<=>(const NSOperatingSystemVersion&,
                            const NSOperatingSystemVersion&) = default;
};

/// What the library asks about the process it runs in. Any thread, in handlers and destructors as
/// well.
class ZEL_EXPORT NSProcessInfo {
public:
    /// `processName`, `setProcessName:`: what the host named the application, else the program's
    /// file name. It names the user's defaults file.
    static std::string processName();
    static void setProcessName(std::string_view name);

    /// `isOperatingSystemAtLeastVersion:`. The portable platform counts as 10.14.0, the first
    /// version with a dark appearance; a host without one sets an older version.
    static bool isOperatingSystemAtLeastVersion(const NSOperatingSystemVersion& version) noexcept;
    static void setOperatingSystemVersion(const NSOperatingSystemVersion& version) noexcept;
};

} // namespace zel::inline v1
