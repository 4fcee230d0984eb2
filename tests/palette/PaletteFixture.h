// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/palette/PaletteRows.h"
#include "tests/support/Providers.h"
#include "tests/support/Styling.h"

#include <functional>

namespace zeltest {

/// Fresh styles of schemes by name, clients' hooks in the registry while a test runs, and a
/// platform without system colours unless the test brings some.
class PaletteTests : public StylingTests {
protected:
    using Style = std::shared_ptr<zel::ZelStyle>;
    using Preset = std::function<void(zel::ZelStyle&)>;

    PaletteTests() { zel::NSSystemColors::setSystemColors({}); }
    ~PaletteTests() override { zel::NSSystemColors::setSystemColors({}); }

    static Style makeStyle(std::optional<std::string_view> schemeIdentifier) {
        const auto scheme =
            zel::alloc<zel::ZelStyleScheme>()->initWithIdentifier(schemeIdentifier, nullptr);
        return zel::alloc<zel::ZelStyle>()->initWithIdentifier("main", scheme);
    }
    /// Has every new style preset by a client's hook, right before the provider runs.
    static void presetBefore(std::string provider, Preset preset) {
        addProvider("client")->setWillApplyBlock(
            [provider = std::move(provider), preset = std::move(preset)](
                const Style& style, auto&&, auto&&, const Provider& running) {
                if (running->identifier() == provider) {
                    preset(*style);
                }
            });
    }
    static void presetBefore(std::string provider, std::string key,
                             std::optional<zel::ZelAttributeValue> value) {
        presetBefore(std::move(provider),
                     [key = std::move(key), value = std::move(value)](zel::ZelStyle& style) {
                         style.setValue(value, key);
                     });
    }

    static void expectColor(const zel::ZelStyle& style, std::string_view key,
                            const zel::NSColor& expected) {
        const auto value = style.effectiveValueForAttribute(key);
        ASSERT_TRUE(value && value->color()) << key;
        EXPECT_EQ(&value->color()->colorSpace(), &expected.colorSpace()) << key;
        for (std::size_t i = 0; i < expected.components().size(); ++i) {
            EXPECT_NEAR(value->color()->components()[i], expected.components()[i], 1e-14)
                << key << ", component " << i;
        }
    }
    static void expectDarkPalette(const zel::ZelStyle& style) {
        for (const DefaultColor& each : allColors()) {
            expectColor(style, each.key, each.dark);
        }
    }
    static void expectOtherPalette(const zel::ZelStyle& style) {
        for (const DefaultColor& each : allColors()) {
            expectColor(style, each.key, each.other);
        }
    }
    static std::optional<zel::NSColor> colorOf(const Style& style, std::string_view key) {
        const auto value = style->effectiveValueForAttribute(key);
        return value && value->color() ? std::optional(*value->color()) : std::nullopt;
    }

private:
    ProvidersRestored restored_;
};

} // namespace zeltest
