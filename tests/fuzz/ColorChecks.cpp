// SPDX-License-Identifier: Apache-2.0
#include "tests/fuzz/ColorChecks.h"

#include "tests/fuzz/Require.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <string>
#include <vector>

namespace zelfuzz {
namespace {

using zel::NSColorSpace;

std::string textOf(const NSColor& color) {
    std::string text = color.colorSpace().localizedName();
    for (const double component : color.components()) {
        text += ' ' + std::to_string(component);
    }
    return text;
}

bool isInRange(double component) {
    return std::isnan(component) || (component >= 0 && component <= 1);
}

/// The first component for each of the three, the last one for alpha; the sums overflow gladly.
void toSRGB(const double* components, double* rgba) noexcept {
    rgba[0] = components[0] * 2;
    rgba[1] = components[0] + components[0];
    rgba[2] = -components[0];
    rgba[3] = components[0];
}

std::vector<const NSColorSpace*> makeSpaces() {
    std::vector<const NSColorSpace*> spaces{
        &NSColorSpace::sRGBColorSpace(), &NSColorSpace::deviceRGBColorSpace(),
        &NSColorSpace::genericGamma22GrayColorSpace(), &NSColorSpace::deviceCMYKColorSpace()};
    for (std::size_t count = 0; count <= NSColorSpace::maximumComponentCount; ++count) {
        spaces.push_back(&NSColorSpace::customColorSpace("custom", count, false));
        if (count > 0) {
            spaces.push_back(&NSColorSpace::customColorSpace("with alpha", count, true));
            spaces.push_back(&NSColorSpace::customColorSpace("with RGB", count, true, toSRGB));
        }
    }
    return spaces;
}

void checkEquality(const NSColor& color, const std::string& text) {
    const bool isNumbers =
        std::ranges::none_of(color.components(), [](double each) { return std::isnan(each); });
    const NSColor copy = color;
    require((color == copy) == isNumbers, "a colour of numbers equals its copy", text);
    require(areSameBits(color, copy), "a copy has the same bits", text);
    for (std::size_t i = color.numberOfComponents(); i < color.components().size(); ++i) {
        require(areSameBits(color.components()[i], 0), "what lies past the count is 0", text);
    }
    for (std::size_t i = 0; i < color.numberOfComponents(); ++i) {
        NSColor::Components changed = color.components();
        changed[i] = changed[i] == 0.5 ? 0.25 : 0.5;
        const NSColor other = NSColor::colorWithColorSpace(color.colorSpace(), changed);
        require(!(color == other) && !(other == color), "another component is another colour",
                text);
    }
}

void checkAlpha(const NSColor& color, double alpha, const std::string& text) {
    const NSColor changed = color.colorWithAlphaComponent(alpha);
    NSColor::Components expected = color.components();
    if (color.colorSpace().hasAlpha()) {
        expected[color.numberOfComponents() - 1] = alpha;
    }
    require(areSameBits(changed, NSColor::colorWithColorSpace(color.colorSpace(), expected)),
            "another alpha changes nothing else", text);
}

void checkGray(double white, double alpha, const std::string& text) {
    const NSColor gray = NSColor::colorWithWhite(white, alpha);
    const auto rgba = gray.sRGBComponents();
    const auto mirrored = NSColor::colorWithWhite(-white, alpha).sRGBComponents();
    require(rgba && mirrored && areSameBits(rgba->alpha, alpha), "a grey keeps its alpha", text);
    require(areSameBits(rgba->red, rgba->green) && areSameBits(rgba->red, rgba->blue),
            "a grey has no hue", text);
    require(std::isnan(rgba->red) == std::isnan(white), "a number stays a number", text);
    if (!std::isnan(white)) {
        require(rgba->red == -mirrored->red, "the curve is its own mirror image", text);
        // A level close to an end may reach it: powers run out of digits.
        require(white < 0 ? rgba->red <= 0 : rgba->red >= 0, "what is below 0 stays there", text);
        require(white > 1 ? rgba->red >= 1 : rgba->red <= 1, "what is above 1 stays there", text);
    }
}

void checkConversions(const NSColor& color, const std::string& text) {
    const auto& space = color.colorSpace();
    const auto itself = color.colorUsingColorSpace(space);
    require(itself && areSameBits(*itself, color), "its own space leaves a colour alone", text);
    require(color.sRGBComponents().has_value() == space.hasRGBForm(),
            "components come from an RGB form", text);
    for (const NSColorSpace* each :
         {&NSColorSpace::sRGBColorSpace(), &NSColorSpace::deviceRGBColorSpace()}) {
        const auto converted = color.colorUsingColorSpace(*each);
        const auto rgba = color.sRGBComponents();
        require(converted.has_value() == (rgba.has_value() || each == &space),
                "what has an RGB form can be converted", text);
        require(!rgba || areSameBits(*converted,
                                     NSColor::colorWithColorSpace(
                                         *each, {rgba->red, rgba->green, rgba->blue, rgba->alpha})),
                "a conversion has the components", text);
    }
    const auto modifiable = color.modifiableColor();
    require(!modifiable || &modifiable->colorSpace() == &NSColorSpace::deviceRGBColorSpace(),
            "a modifiable colour is device RGB", text);
}

void checkEffects(const NSColor& color, const std::string& text) {
    for (const bool darkMode : {false, true}) {
        require(
            areSameBits(color.colorWithZelStyleEffect(zel::ZelStyleEffectNone, darkMode), color),
            "no effect leaves a colour alone", text);
        for (unsigned long effect = 1; effect <= 5; ++effect) {
            const NSColor changed = color.colorWithZelStyleEffect(effect, darkMode);
            require(&changed.colorSpace() == &NSColorSpace::sRGBColorSpace() &&
                        std::ranges::all_of(changed.components(), isInRange),
                    "an effect gives sRGB within its range", text);
        }
    }
}

} // namespace

bool areSameBits(double a, double b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

bool areSameBits(const NSColor& a, const NSColor& b) {
    return &a.colorSpace() == &b.colorSpace() &&
           std::ranges::equal(a.components(), b.components(),
                              [](double x, double y) { return areSameBits(x, y); });
}

bool areSameBits(const NSNumber& a, const NSNumber& b) {
    return a.kind() == NSNumber::Kind::Double && b.kind() == NSNumber::Kind::Double
               ? areSameBits(a.doubleValue(), b.doubleValue())
               : a == b;
}

const NSColorSpace& spaceNumbered(char letter) {
    static const std::vector<const NSColorSpace*>& spaces = *new auto(makeSpaces());
    constexpr std::string_view names = "sdgk"; // sRGB, device, grey, CMYK; any other: custom
    const std::size_t known = letter == '\0' ? std::string_view::npos : names.find(letter);
    return *spaces[known != std::string_view::npos
                       ? known
                       : static_cast<unsigned char>(letter) % spaces.size()];
}

void checkColor(const NSColor& color, double alpha) {
    const std::string text = textOf(color);
    checkEquality(color, text);
    checkAlpha(color, alpha, text);
    checkConversions(color, text);
    checkEffects(color, text);
    checkGray(color.components()[0], alpha, text);
}

void checkNumber(const NSNumber& number) {
    const double value = number.doubleValue();
    const std::string text = std::to_string(value);
    if (number.kind() == NSNumber::Kind::Double) {
        constexpr double beyond = 18446744073709551616.0;
        const std::uint64_t whole = number.unsignedLongValue();
        require(value > 0 || whole == 0, "what is not above 0 is cut to 0", text);
        require(value < beyond || std::isnan(value) || whole == UINT64_MAX, "the most is the most",
                text);
        require(!(value > 0 && value < beyond) || static_cast<double>(whole) == std::trunc(value),
                "a number is cut towards 0", text);
    }
    require(number.boolValue() == (value != 0), "true is what is not 0", text);
    (void)number.longValue(); // for the sanitizer
    require((number == NSNumber(number)) == !std::isnan(value), "a number equals its copy", text);
}

} // namespace zelfuzz
