// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace zel::inline v1 {

/// Names on the bus: the bus itself, and where the desktop portal keeps its settings.
inline constexpr char busName[] = "org.freedesktop.DBus";
inline constexpr char busPath[] = "/org/freedesktop/DBus";
inline constexpr char portalName[] = "org.freedesktop.portal.Desktop";
inline constexpr char portalPath[] = "/org/freedesktop/portal/desktop";
inline constexpr char settingsInterface[] = "org.freedesktop.portal.Settings";
inline constexpr char appearanceNamespace[] = "org.freedesktop.appearance";
inline constexpr char colorSchemeKey[] = "color-scheme";

} // namespace zel::inline v1
