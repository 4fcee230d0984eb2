// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/NSAppearance.h>

#include <algorithm>
#include <array>

namespace zel::inline v1 {

std::string_view NSAppearanceNameAqua = "NSAppearanceNameAqua";
std::string_view NSAppearanceNameDarkAqua = "NSAppearanceNameDarkAqua";
std::string_view NSAppearanceNameVibrantLight = "NSAppearanceNameVibrantLight";
std::string_view NSAppearanceNameVibrantDark = "NSAppearanceNameVibrantDark";
std::string_view NSAppearanceNameAccessibilityHighContrastAqua =
    "NSAppearanceNameAccessibilityHighContrastAqua";
std::string_view NSAppearanceNameAccessibilityHighContrastDarkAqua =
    "NSAppearanceNameAccessibilityHighContrastDarkAqua";

namespace {

struct Variant {
    const std::string_view& name;
    const std::string_view& plainer;
};

/// Which appearance each variant falls back to.
constexpr std::array variants{
    Variant{NSAppearanceNameVibrantLight, NSAppearanceNameAqua},
    Variant{NSAppearanceNameVibrantDark, NSAppearanceNameDarkAqua},
    Variant{NSAppearanceNameAccessibilityHighContrastAqua, NSAppearanceNameAqua},
    Variant{NSAppearanceNameAccessibilityHighContrastDarkAqua, NSAppearanceNameDarkAqua},
};

} // namespace

NSAppearance NSAppearance::appearanceNamed(std::string_view name) {
    return NSAppearance(name);
}

std::optional<std::string>
NSAppearance::bestMatchFromAppearancesWithNames(const std::vector<std::string_view>& names) const {
    const auto isListed = [&](std::string_view name) {
        return std::ranges::find(names, name) != names.end();
    };
    if (isListed(name_)) {
        return name_;
    }
    for (const Variant& each : variants) {
        if (each.name == name_ && isListed(each.plainer)) {
            return std::string(each.plainer);
        }
    }
    return std::nullopt;
}

} // namespace zel::inline v1
