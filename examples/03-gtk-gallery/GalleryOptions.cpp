// SPDX-License-Identifier: Apache-2.0
#include "GalleryOptions.h"

#include <glib.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace gallery {
namespace {

struct FreeText {
    void operator()(gchar* text) const { g_free(text); }
};
using Text = std::unique_ptr<gchar, FreeText>;

[[noreturn]] void refuse(const std::string& reason) {
    std::fprintf(stderr, "%s\nTry --help.\n", reason.c_str());
    std::exit(2);
}

Source sourceOf(std::string_view word) {
    if (word == "light") {
        return Source::Light;
    }
    if (word == "dark") {
        return Source::Dark;
    }
    if (word != "portal") {
        refuse("--source is portal, light or dark, not '" + std::string(word) + "'.");
    }
    return Source::Portal;
}

bool isDark(std::string_view word) {
    if (word != "light" && word != "dark") {
        refuse("--then is light or dark, not '" + std::string(word) + "'.");
    }
    return word == "dark";
}

} // namespace

Options optionsOf(int argc, char** argv) {
    gchar* source = nullptr;
    gchar* screenshot = nullptr;
    gchar* then = nullptr;
    gchar* choose = nullptr;
    const std::array entries{
        GOptionEntry{"source", 0, 0, G_OPTION_ARG_STRING, &source,
                     "Who says whether it is dark: the desktop (portal, unless given), or always "
                     "the same",
                     "portal|light|dark"},
        GOptionEntry{"screenshot", 0, 0, G_OPTION_ARG_FILENAME, &screenshot,
                     "Save a picture of the first frame, say how long it took and where each "
                     "swatch is, and end",
                     "FILE"},
        GOptionEntry{"then", 0, 0, G_OPTION_ARG_STRING, &then,
                     "Turn light or dark after the first frame, or, with the portal, wait until "
                     "the desktop does; the picture is taken then",
                     "light|dark"},
        GOptionEntry{"choose", 0, 0, G_OPTION_ARG_STRING, &choose,
                     "Choose a mode from the window's menu after the first frame, such as "
                     "always-dark",
                     "MODE"},
        GOptionEntry{}};
    GOptionContext* const context = g_option_context_new(nullptr);
    g_option_context_set_summary(context,
                                 "Shows what GTK widgets look like in the styles of ZelStyleKit.");
    g_option_context_add_main_entries(context, entries.data(), nullptr);
    GError* error = nullptr;
    const bool understood = g_option_context_parse(context, &argc, &argv, &error) != FALSE;
    g_option_context_free(context);
    const Text sourceText(source);
    const Text screenshotText(screenshot);
    const Text thenText(then);
    const Text chooseText(choose);
    if (!understood) {
        refuse(error->message);
    }
    if (argc > 1) {
        refuse(std::string("Unexpected: ") + argv[1] + ".");
    }

    Options options;
    options.source = source ? sourceOf(source) : Source::Portal;
    options.screenshot = screenshot ? screenshot : "";
    options.choose = choose ? choose : "";
    if (then) {
        options.then = isDark(then);
    }
    return options;
}

} // namespace gallery
