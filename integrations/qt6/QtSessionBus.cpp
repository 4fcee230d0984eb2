// SPDX-License-Identifier: Apache-2.0
#include "QtSessionBus.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QDBusConnection>

#include <optional>

namespace zel::inline v1 {
namespace {

constexpr const char* variable = "DBUS_SESSION_BUS_ADDRESS";

/// What the environment really says, while it says something else; none where it says nothing.
std::optional<QByteArray>& realAddress() {
    static std::optional<QByteArray> address;
    return address;
}

// Qt connects once in a process; the programs that the application starts have a bus as before.
void connectInVain() {
    (void)QDBusConnection::sessionBus();
    if (const auto& address = realAddress()) {
        qputenv(variable, *address);
    } else {
        qunsetenv(variable);
    }
}

} // namespace

// Without an application object Qt must not connect yet; some desktops' themes do so while it is
// made, others don't.
void leaveQtWithoutSessionBus() {
    realAddress() =
        qEnvironmentVariableIsSet(variable) ? std::optional(qgetenv(variable)) : std::nullopt;
    qputenv(variable, "unix:path=/dev/null/no-bus");
    if (QCoreApplication::instance()) {
        connectInVain();
    } else {
        qAddPreRoutine(connectInVain);
    }
}

} // namespace zel::inline v1
