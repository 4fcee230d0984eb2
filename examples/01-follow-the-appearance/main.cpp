// SPDX-License-Identifier: Apache-2.0

#include <ZelStyleKit/ZelStyleKit.h>

#include <cstdio>

int main() {
    const auto application = zel::NSApplication::sharedApplication();
    zel::ZelStyleManager::setup();

    const auto window = zel::alloc<zel::NSView>();
    const auto button = zel::alloc<zel::NSView>();
    window->init();
    button->init();
    window->addSubview(button);
    button->registerStyleableChangeHandler([](const auto& /*owner*/, const auto& style, auto) {
        const auto color = style->labelColor()->sRGBComponents();
        std::printf("%s: label %.1f\n", style->isDarkStyle() ? "dark" : "light", color->red);
    });

    // The desktop turns dark. A host's event loop drains the queue, here it is done by hand.
    application->setEffectiveAppearance(
        zel::NSAppearance::appearanceNamed(zel::NSAppearanceNameDarkAqua));
    zel::NSMainQueue::mainQueue().drain();

    window->setCustomZelStyleSchemeIdentifier("light"); // this window stays light
}
