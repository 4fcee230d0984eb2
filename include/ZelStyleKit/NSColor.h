// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/Export.h>
#include <ZelStyleKit/NSColorSpace.h>

#include <array>
#include <cstdint>
#include <optional>

namespace zel::inline v1 {

/// A colour effect; any other number is allowed and only rebuilds the colour as sRGB.
enum ZelStyleEffect : unsigned long {
    ZelStyleEffectNone = 0,      ///< the colour itself
    ZelStyleEffectSelected = 1,  ///< red, green, blue × 1.1 in dark mode, × 0.9 otherwise
    ZelStyleEffectShade = 2,     ///< red, green, blue × 1.1 in dark mode, × 0.8 otherwise
    ZelStyleEffectHalfAlpha = 3, ///< alpha × 0.5
    ZelStyleEffectDim = 4,       ///< red, green, blue × 0.95
};

/// Red, green, blue and alpha, straight alpha, doubles; usually 0 to 1.
struct ZelRGBA {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 0;
    friend bool operator==(const ZelRGBA&, const ZelRGBA&) = default;
};

/// An immutable colour: components in a colour space. A value: trivially copyable, allocates
/// nothing; two colours are the same colour when space and components are equal.
/// Refers to: its space, which lives for the process.
/// Threads: pure functions, any thread.
/// Failure: a conversion that the space doesn't allow gives nothing.
class ZEL_EXPORT NSColor {
public:
    using Components = std::array<double, NSColorSpace::maximumComponentCount>;

    /// `colorWithSRGBRed:green:blue:alpha:`, encoded sRGB components. Kept as given, not clamped.
    static NSColor colorWithSRGBRed(double red, double green, double blue, double alpha) noexcept;
    /// `colorWithDeviceRed:green:blue:alpha:`
    static NSColor colorWithDeviceRed(double red, double green, double blue, double alpha) noexcept;
    /// `colorWithWhite:alpha:`, a grey of gamma 2.2.
    static NSColor colorWithWhite(double white, double alpha) noexcept;
    /// `colorWithDeviceCyan:magenta:yellow:black:alpha:`
    static NSColor colorWithDeviceCyan(double cyan, double magenta, double yellow, double black,
                                       double alpha) noexcept;
    /// `colorWithColorSpace:components:`. As many components are read as the space has.
    static NSColor colorWithColorSpace(const NSColorSpace& space,
                                       const Components& components) noexcept;

    /// Greys: level 1, level 0, and level 0 with alpha 0.
    static NSColor whiteColor() noexcept;
    static NSColor blackColor() noexcept;
    static NSColor clearColor() noexcept;

    /// The platform's hues; none on a platform that brings none (see `NSSystemColors`).
    static std::optional<NSColor> systemBlueColor() noexcept;
    static std::optional<NSColor> systemGreenColor() noexcept;
    static std::optional<NSColor> systemOrangeColor() noexcept;
    static std::optional<NSColor> systemPurpleColor() noexcept;
    static std::optional<NSColor> systemRedColor() noexcept;
    static std::optional<NSColor> systemYellowColor() noexcept;
    static std::optional<NSColor> systemPinkColor() noexcept;
    /// `windowBackgroundColor`: the platform's, else sRGB 236/255.
    static NSColor windowBackgroundColor() noexcept;

    [[nodiscard]] const NSColorSpace& colorSpace() const noexcept { return *space_; }
    /// `CGColorGetNumberOfComponents` and `CGColorGetComponents` of the underlying graphics colour:
    /// alpha included. Components past the count are 0.
    [[nodiscard]] std::size_t numberOfComponents() const noexcept {
        return space_->numberOfComponents();
    }
    [[nodiscard]] const Components& components() const noexcept { return components_; }

    /// The colour's encoded sRGB components; nothing where its space has no RGB form.
    [[nodiscard]] std::optional<ZelRGBA> sRGBComponents() const noexcept;

    /// `colorUsingColorSpace:`. Converts to sRGB and device RGB, and to the colour's own space
    /// (the colour itself); anything else gives nothing.
    [[nodiscard]] std::optional<NSColor>
    colorUsingColorSpace(const NSColorSpace& space) const noexcept;

    /// `colorWithAlphaComponent:`. The same colour with its alpha replaced, in its own space; a
    /// colour of a space without alpha is returned as it is.
    [[nodiscard]] NSColor colorWithAlphaComponent(double alpha) const noexcept;

    /// `colorWithZelStyleEffect:darkMode:`. Effect 0 is the receiver itself; any other is an sRGB
    /// colour, its components clamped to 0..1. A colour without an RGB form counts as transparent
    /// black.
    [[nodiscard]] NSColor colorWithZelStyleEffect(unsigned long effect,
                                                  bool darkMode) const noexcept;

    /// `colorWithZelStyleEffect:`. Dark mode off, whatever the system's appearance.
    [[nodiscard]] NSColor colorWithZelStyleEffect(unsigned long effect) const noexcept;

    /// `modifiableColor`: a device RGB form whose components can be read and changed, or nothing.
    /// Deliberate: a colour that can't be converted is read blindly by its component count, one or
    /// two as grey, three or four as red, green, blue, whatever its space.
    [[nodiscard]] std::optional<NSColor> modifiableColor() const noexcept;

    /// Same space and equal components; a component that is not a number equals nothing.
    friend bool operator==(const NSColor& a, const NSColor& b) noexcept {
        return a.space_ == b.space_ && a.components_ == b.components_;
    }

private:
    friend struct AttributeSlot;
    NSColor(const NSColorSpace& space, const Components& components) noexcept
        : space_(&space), components_(components) {}

    const NSColorSpace* space_;
    Components components_;
};

/// The hues and the window background that a host's platform brings; absent ones fall back.
struct NSSystemColors {
    std::optional<NSColor> blue, green, orange, purple, red, yellow, pink, windowBackground;

    /// Sets what `NSColor`'s system colours answer from now on. Styles already made keep theirs.
    /// Any thread.
    ZEL_EXPORT static void setSystemColors(const NSSystemColors& colors);
    [[nodiscard]] ZEL_EXPORT static NSSystemColors systemColors();
};

} // namespace zel::inline v1
