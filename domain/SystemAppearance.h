// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

namespace zel {
inline namespace v1 {

// What a domain asks of the appearance tracker above it, which it knows by these only.

/// Whether the shared tracker says dark; the first call makes the tracker.
bool systemAppearanceIsDark();

/// The name of the notification that the tracker posts.
std::string_view systemAppearanceChangedNotification();

} // namespace v1
} // namespace zel
