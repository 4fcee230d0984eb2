// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/Export.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zel::inline v1 {

/// Names of the standard appearances. Modifiable variables that hold fixed strings.
extern ZEL_EXPORT std::string_view NSAppearanceNameAqua;
extern ZEL_EXPORT std::string_view NSAppearanceNameDarkAqua;
extern ZEL_EXPORT std::string_view NSAppearanceNameVibrantLight;
extern ZEL_EXPORT std::string_view NSAppearanceNameVibrantDark;
extern ZEL_EXPORT std::string_view NSAppearanceNameAccessibilityHighContrastAqua;
extern ZEL_EXPORT std::string_view NSAppearanceNameAccessibilityHighContrastDarkAqua;

/// How an application looks, by name. A value.
class ZEL_EXPORT NSAppearance {
public:
    /// `appearanceNamed:`. Any name is accepted; an unknown one matches only itself.
    static NSAppearance appearanceNamed(std::string_view name);

    [[nodiscard]] const std::string& name() const noexcept { return name_; }

    /// `bestMatchFromAppearancesWithNames:`. The appearance's own name where it is listed, else the
    /// plainer appearances that it is a variant of, nearest first; none where nothing fits. A
    /// high-contrast or vibrant dark appearance is a variant of the dark one, a high-contrast or
    /// vibrant light one of the light one.
    [[nodiscard]] std::optional<std::string>
    bestMatchFromAppearancesWithNames(const std::vector<std::string_view>& names) const;

    friend bool operator==(const NSAppearance&, const NSAppearance&) = default;

private:
    explicit NSAppearance(std::string_view name) : name_(name) {}
    std::string name_;
};

} // namespace zel::inline v1
