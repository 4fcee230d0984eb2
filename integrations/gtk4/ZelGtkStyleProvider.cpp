// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/ZelGtkStyleProvider.h>

#include "DisplayColors.h"

namespace zel::inline v1 {

ZelGtkStyleProvider::ZelGtkStyleProvider(GdkDisplay* display, unsigned priority) {
    GdkDisplay* const styled = display ? display : gdk_display_get_default();
    if (!styled || DisplayColors::of(styled)) {
        return;
    }
    colors_ = alloc<DisplayColors>();
    colors_->init();
    colors_->start(styled, priority);
}

ZelGtkStyleProvider::~ZelGtkStyleProvider() {
    if (colors_) {
        colors_->stop();
    }
}

std::uint64_t ZelGtkStyleProvider::loadCount() const noexcept {
    return colors_ ? colors_->loads() : 0;
}

} // namespace zel::inline v1
