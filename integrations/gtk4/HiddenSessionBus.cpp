// SPDX-License-Identifier: Apache-2.0
#include "HiddenSessionBus.h"

#include <glib.h>

namespace zel::inline v1 {
namespace {

constexpr const char* variable = "DBUS_SESSION_BUS_ADDRESS";
// Nothing is ever below a device; an empty address would have GIO look elsewhere.
constexpr const char* nobody = "unix:path=/dev/null/no-bus";

} // namespace

HiddenSessionBus::HiddenSessionBus() {
    if (const char* const address = g_getenv(variable)) {
        address_ = address;
    }
    g_setenv(variable, nobody, TRUE);
}

HiddenSessionBus::~HiddenSessionBus() {
    if (address_) {
        g_setenv(variable, address_->c_str(), TRUE);
    } else {
        g_unsetenv(variable);
    }
}

} // namespace zel::inline v1
