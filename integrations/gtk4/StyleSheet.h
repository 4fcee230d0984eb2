// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/ZelStyle.h>

#include <gtk/gtk.h>

#include <cstdint>
#include <string>

namespace zel::inline v1 {

/// A style's colours as GTK knows them: a provider of named colours, and which style, as of which
/// update, it was made from.
/// Owns: the provider (by reference count). Refers to: the style, by its token.
/// Threads: the main thread. Failure: none; no style has no colours.
class StyleSheet {
public:
    StyleSheet() : provider_(gtk_css_provider_new()) {}
    ~StyleSheet() { g_object_unref(provider_); }
    StyleSheet(const StyleSheet&) = delete;
    StyleSheet& operator=(const StyleSheet&) = delete;

    /// Takes over the style's colours. Does nothing where neither style nor values have changed;
    /// leaves GTK alone where the colours are the same ones. True where GTK was given others.
    bool show(const ZelStyle* style);

    [[nodiscard]] GtkStyleProvider* provider() const noexcept {
        return GTK_STYLE_PROVIDER(provider_);
    }
    [[nodiscard]] ZelStyleToken style() const noexcept { return style_; }

private:
    GtkCssProvider* const provider_;
    ZelStyleToken style_;
    std::uint64_t seed_ = 0;
    std::string text_;
};

} // namespace zel::inline v1
