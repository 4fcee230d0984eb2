// SPDX-License-Identifier: Apache-2.0
#include "StyleSheet.h"

#include "NamedColors.h"

#include <utility>

namespace zel::inline v1 {

bool StyleSheet::show(const ZelStyle* style) {
    const ZelStyleToken token = style ? style->token() : ZelStyleToken();
    const std::uint64_t seed = style ? style->seed() : 0;
    if (token == style_ && seed == seed_) {
        return false;
    }
    style_ = token;
    seed_ = seed;
    std::string text = style ? namedColorsOf(*style) : std::string();
    if (text == text_) {
        return false;
    }
    text_ = std::move(text);
    gtk_css_provider_load_from_data(provider_, text_.data(), static_cast<gssize>(text_.size()));
    return true;
}

} // namespace zel::inline v1
