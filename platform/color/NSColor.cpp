// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/NSColor.h>

#include "platform/locks/PrivateLock.h"

#include <algorithm>
#include <array>
#include <optional>

namespace zel::inline v1 {
namespace {

struct SystemColorStore {
    PrivateLock lock;
    NSSystemColors colors ZEL_GUARDED_BY(lock);
};

// Never destroyed: a host's static objects may ask for system colours while the process ends.
SystemColorStore& systemColorStore() {
    static SystemColorStore& store = *new SystemColorStore;
    return store;
}

std::optional<NSColor> systemColor(std::optional<NSColor> NSSystemColors::*color) {
    SystemColorStore& store = systemColorStore();
    const PrivateGuard guard(store.lock);
    return store.colors.*color;
}

} // namespace

NSColor NSColor::colorWithSRGBRed(double red, double green, double blue, double alpha) noexcept {
    return {NSColorSpace::sRGBColorSpace(), {red, green, blue, alpha}};
}

NSColor NSColor::colorWithDeviceRed(double red, double green, double blue, double alpha) noexcept {
    return {NSColorSpace::deviceRGBColorSpace(), {red, green, blue, alpha}};
}

NSColor NSColor::colorWithWhite(double white, double alpha) noexcept {
    return {NSColorSpace::genericGamma22GrayColorSpace(), {white, alpha}};
}

NSColor NSColor::colorWithDeviceCyan(double cyan, double magenta, double yellow, double black,
                                     double alpha) noexcept {
    return {NSColorSpace::deviceCMYKColorSpace(), {cyan, magenta, yellow, black, alpha}};
}

NSColor NSColor::colorWithColorSpace(const NSColorSpace& space,
                                     const Components& components) noexcept {
    // What lies past the count is dropped, so that equality needs no look at the count.
    Components read{};
    std::copy_n(components.begin(), space.numberOfComponents(), read.begin());
    return {space, read};
}

NSColor NSColor::whiteColor() noexcept {
    return colorWithWhite(1, 1);
}

NSColor NSColor::blackColor() noexcept {
    return colorWithWhite(0, 1);
}

NSColor NSColor::clearColor() noexcept {
    return colorWithWhite(0, 0);
}

std::optional<NSColor> NSColor::systemBlueColor() noexcept {
    return systemColor(&NSSystemColors::blue);
}

std::optional<NSColor> NSColor::systemGreenColor() noexcept {
    return systemColor(&NSSystemColors::green);
}

std::optional<NSColor> NSColor::systemOrangeColor() noexcept {
    return systemColor(&NSSystemColors::orange);
}

std::optional<NSColor> NSColor::systemPurpleColor() noexcept {
    return systemColor(&NSSystemColors::purple);
}

std::optional<NSColor> NSColor::systemRedColor() noexcept {
    return systemColor(&NSSystemColors::red);
}

std::optional<NSColor> NSColor::systemYellowColor() noexcept {
    return systemColor(&NSSystemColors::yellow);
}

std::optional<NSColor> NSColor::systemPinkColor() noexcept {
    return systemColor(&NSSystemColors::pink);
}

NSColor NSColor::windowBackgroundColor() noexcept {
    constexpr double level = 236.0 / 255;
    return systemColor(&NSSystemColors::windowBackground)
        .value_or(colorWithSRGBRed(level, level, level, 1));
}

std::optional<ZelRGBA> NSColor::sRGBComponents() const noexcept {
    if (!space_->hasRGBForm()) {
        return std::nullopt;
    }
    std::array<double, 4> rgba{};
    space_->toSRGB_(components_.data(), rgba.data());
    return ZelRGBA{rgba[0], rgba[1], rgba[2], rgba[3]};
}

std::optional<NSColor> NSColor::colorUsingColorSpace(const NSColorSpace& space) const noexcept {
    if (&space == space_) {
        return *this;
    }
    // Without a display profile device RGB has sRGB's components, so that one reading serves both.
    const bool isRGB =
        &space == &NSColorSpace::sRGBColorSpace() || &space == &NSColorSpace::deviceRGBColorSpace();
    const std::optional<ZelRGBA> rgba = isRGB ? sRGBComponents() : std::nullopt;
    if (!rgba) {
        return std::nullopt;
    }
    return NSColor(space, {rgba->red, rgba->green, rgba->blue, rgba->alpha});
}

NSColor NSColor::colorWithAlphaComponent(double alpha) const noexcept {
    NSColor color = *this;
    if (space_->hasAlpha()) {
        color.components_[space_->numberOfComponents() - 1] = alpha;
    }
    return color;
}

void NSSystemColors::setSystemColors(const NSSystemColors& colors) {
    SystemColorStore& store = systemColorStore();
    const PrivateGuard guard(store.lock);
    store.colors = colors;
}

NSSystemColors NSSystemColors::systemColors() {
    SystemColorStore& store = systemColorStore();
    const PrivateGuard guard(store.lock);
    return store.colors;
}

} // namespace zel::inline v1
