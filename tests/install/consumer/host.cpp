// SPDX-License-Identifier: Apache-2.0
// A small host: a view whose handler hears of the mode that the user chooses.
#include <ZelStyleKit/ZelStyleKit.h>

#include <cstdio>
#include <vector>

namespace {

int failures = 0;

void expect(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "not so: %s\n", what);
        ++failures;
    }
}

} // namespace

int main() {
    // So that a run touches no file of the user's.
    zel::NSUserDefaults::standardUserDefaults().setStore(
        std::make_shared<zel::NSUserDefaultsInMemory>());
    zel::ZelStyleManager::setup();

    const auto window = zel::alloc<zel::NSView>();
    window->init();
    std::vector<std::optional<zel::NSColor>> backgrounds;
    const bool registered = window->registerStyleableChangeHandler(
        [&backgrounds](const auto&, const std::shared_ptr<zel::ZelStyle>& style, auto) {
            backgrounds.push_back(style ? style->backgroundColor() : std::nullopt);
        });
    expect(registered, "a view registers a handler");

    const auto& manager = zel::ZelStyleManager::sharedStyleManager();
    expect(manager->modes().size() == 3, "setup adds three modes");
    expect(manager->setActiveModeIdentifier("always-dark"), "the choice is stored");

    expect(backgrounds.size() == 2, "the handler is called at registration and for the dark mode");
    if (backgrounds.size() == 2) {
        expect(backgrounds[0] == zel::NSColor::colorWithSRGBRed(1, 1, 1, 1), "light comes first");
        expect(backgrounds[1] == zel::NSColor::colorWithSRGBRed(0, 0, 0, 1), "then comes dark");
    }

    // The host's own style, made the way an application makes one.
    const auto own = zel::alloc<zel::ZelStyle>()->initWithIdentifier("sidebar", nullptr);
    own->updateStyleWithChanges([](const std::shared_ptr<zel::ZelStyle>& style) {
        style->setAccentColor(zel::NSColor::colorWithSRGBRed(0.25, 0.5, 0.75, 1));
        return true;
    });
    expect(own->seed() == 1, "an update counts");
    expect(own->accentColor() == zel::NSColor::colorWithSRGBRed(0.25, 0.5, 0.75, 1),
           "a style answers the colour it was given");

    // Exceptions and their types cross the library's border.
    bool raised = false;
    try {
        own->setValue(std::nullopt, std::nullopt);
    } catch (const zel::ZelInvalidArgument&) {
        raised = true;
    }
    expect(raised, "writing under a nil key raises");
    return failures == 0 ? 0 : 1;
}
