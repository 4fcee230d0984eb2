// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "integrations/portal/PortalNames.h"

#include <string>

namespace zelfuzz {

/// What tells one kind of signal on the bus from every other.
struct SignalName {
    std::string path; ///< of the object that sends it
    std::string interface;
    std::string member;

    friend bool operator==(const SignalName&, const SignalName&) = default;
};

/// The portal says that a setting has changed, the bus that a name has got another owner.
inline const SignalName settingChanged{zel::portalPath, zel::settingsInterface, "SettingChanged"};
inline const SignalName nameOwnerChanged{zel::busPath, zel::busName, "NameOwnerChanged"};

} // namespace zelfuzz
