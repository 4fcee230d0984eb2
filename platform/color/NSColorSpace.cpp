// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/NSColorSpace.h>

#include "platform/color/ColorConversion.h"
#include "platform/locks/PrivateLock.h"

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

namespace zel::inline v1 {
namespace {

// sRGB as it stands. Device RGB shares it: without a display profile the display is taken for sRGB.
void sRGBFromRGB(const double* components, double* rgba) noexcept {
    std::copy_n(components, 4, rgba);
}

// Grey of gamma 2.2 has another transfer curve than sRGB, so that the level goes through linear
// light. Equal amounts of the sRGB primaries make the same white, hence one value for all three.
void sRGBFromGray(const double* components, double* rgba) noexcept {
    std::fill_n(rgba, 3, sRGBFromLinear(linearFromGamma22(components[0])));
    rgba[3] = components[1];
}

// Every custom space there is. Colours refer to a space by its address, so that none ever goes.
struct CustomSpaces {
    PrivateLock lock;
    std::vector<std::unique_ptr<const NSColorSpace>> spaces ZEL_GUARDED_BY(lock);
};

CustomSpaces& customSpaces() {
    static CustomSpaces& spaces = *new CustomSpaces;
    return spaces;
}

} // namespace

// The built-in spaces are made on first use and never destroyed: colours in static objects of a
// host may use them before this file's own statics would exist and after they would have gone.

const NSColorSpace& NSColorSpace::sRGBColorSpace() noexcept {
    static const NSColorSpace& space = *new NSColorSpace("sRGB IEC61966-2.1", 4, true, sRGBFromRGB);
    return space;
}

const NSColorSpace& NSColorSpace::deviceRGBColorSpace() noexcept {
    static const NSColorSpace& space = *new NSColorSpace("Device RGB", 4, true, sRGBFromRGB);
    return space;
}

const NSColorSpace& NSColorSpace::genericGamma22GrayColorSpace() noexcept {
    static const NSColorSpace& space =
        *new NSColorSpace("Generic Gray Gamma 2.2", 2, true, sRGBFromGray);
    return space;
}

const NSColorSpace& NSColorSpace::deviceCMYKColorSpace() noexcept {
    static const NSColorSpace& space = *new NSColorSpace("Device CMYK", 5, true, nullptr);
    return space;
}

const NSColorSpace& NSColorSpace::customColorSpace(std::string_view name,
                                                   std::size_t numberOfComponents, bool hasAlpha,
                                                   ToSRGB toSRGB) {
    if (numberOfComponents > maximumComponentCount) {
        throw std::invalid_argument("a colour space has too many components");
    }
    if (hasAlpha && numberOfComponents == 0) {
        throw std::invalid_argument("a colour space without components has no alpha");
    }
    std::unique_ptr<const NSColorSpace> space(
        new NSColorSpace(name, numberOfComponents, hasAlpha, toSRGB));
    CustomSpaces& custom = customSpaces();
    const PrivateGuard guard(custom.lock);
    const auto present = std::ranges::find_if(custom.spaces, [&](const auto& each) {
        return each->name_ == name && each->count_ == numberOfComponents &&
               each->hasAlpha_ == hasAlpha && each->toSRGB_ == toSRGB;
    });
    return present != custom.spaces.end() ? **present
                                          : *custom.spaces.emplace_back(std::move(space));
}

} // namespace zel::inline v1
