// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/Export.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace zel::inline v1 {

class NSColor;

/// A colour space: how many components a colour of it has, alpha included, and how they become
/// sRGB, if they do.
/// Owns: its name. Lives for the process: colours refer to it by address.
/// Threads: immutable; making a custom space takes a lock of its own.
/// Failure: a custom space of too many components, or with alpha but no component, raises
/// `std::invalid_argument`.
class ZEL_EXPORT NSColorSpace {
public:
    /// The most components, alpha included, that a colour can have.
    static constexpr std::size_t maximumComponentCount = 5;

    /// Turns a custom space's components into encoded sRGB red, green, blue and alpha, 0 to 1.
    /// `components` holds `numberOfComponents()` doubles, `rgba` has room for four. Must be pure.
    using ToSRGB = void (*)(const double* components, double* rgba) noexcept;

    NSColorSpace(const NSColorSpace&) = delete;
    NSColorSpace& operator=(const NSColorSpace&) = delete;

    /// `sRGBColorSpace`: IEC 61966-2-1, components encoded red, green, blue, alpha.
    static const NSColorSpace& sRGBColorSpace() noexcept;
    /// `deviceRGBColorSpace`: the display's own RGB; without a display profile the same components
    /// as sRGB.
    static const NSColorSpace& deviceRGBColorSpace() noexcept;
    /// `genericGamma22GrayColorSpace`: white level encoded with gamma 2.2, alpha.
    static const NSColorSpace& genericGamma22GrayColorSpace() noexcept;
    /// `deviceCMYKColorSpace`: cyan, magenta, yellow, black, alpha. Has no RGB form.
    static const NSColorSpace& deviceCMYKColorSpace() noexcept;

    /// A space of the host's own, kept for the process; equal arguments answer the same one.
    /// `numberOfComponents` counts alpha, the last component of a space that has one: 0 to
    /// `maximumComponentCount`. Without `toSRGB` its colours have no RGB form.
    static const NSColorSpace& customColorSpace(std::string_view name,
                                                std::size_t numberOfComponents, bool hasAlpha,
                                                ToSRGB toSRGB = nullptr);

    [[nodiscard]] const std::string& localizedName() const noexcept { return name_; }
    /// Components of a colour of this space, alpha included where the space has one.
    [[nodiscard]] std::size_t numberOfComponents() const noexcept { return count_; }
    /// Whether the last component is alpha.
    [[nodiscard]] bool hasAlpha() const noexcept { return hasAlpha_; }
    /// Whether colours of this space can become RGB.
    [[nodiscard]] bool hasRGBForm() const noexcept { return toSRGB_ != nullptr; }

private:
    friend class NSColor;
    NSColorSpace(std::string_view name, std::size_t count, bool hasAlpha, ToSRGB toSRGB)
        : name_(name), count_(count), hasAlpha_(hasAlpha), toSRGB_(toSRGB) {}

    std::string name_;
    std::size_t count_;
    bool hasAlpha_;
    ToSRGB toSRGB_;
};

} // namespace zel::inline v1
