// SPDX-License-Identifier: Apache-2.0
#include "tests/threads/Stage.h"

#include "tests/support/Styling.h"

#include <algorithm>

namespace zeltest {

using namespace zel;

PaintedStyle::PaintedStyle(std::shared_ptr<ZelStyle> painted) : style(std::move(painted)) {
    paint();
}

void PaintedStyle::paint() {
    style->updateStyleWithChanges([this](const std::shared_ptr<ZelStyle>& changed) {
        const std::uint64_t version = ++version_; // one update at a time
        changed->setLabelColor(colorOf(version));
        changed->setAccentColor(colorOf(version));
        changed->setValue(ZelAttributeValue(std::to_string(version)), textKey);
        return true;
    });
}

NSColor PaintedStyle::colorOf(std::uint64_t version) {
    const auto value = static_cast<double>(version);
    return NSColor::colorWithSRGBRed(value, value + 0.25, value + 0.5, value + 0.75);
}

std::uint64_t PaintedStyle::versionOf(const std::optional<NSColor>& color) {
    require(color.has_value(), "a colour is missing");
    const auto version = static_cast<std::uint64_t>(color->components()[0]);
    require(*color == colorOf(version), "a colour was never written like that");
    return version;
}

std::uint64_t PaintedStyle::versionOfText(const std::optional<ZelAttributeValue>& text) {
    require(text && text->as<std::string>(), "a text is missing");
    return std::stoull(*text->as<std::string>());
}

void Diary::note(const std::shared_ptr<ZelStyle>& style, ZelStyleChangeEvent event) {
    require(mayBeCalled, "a listener is called after it was unregistered");
    told = ZelStyleToken(style).serial();
    initialCalls += event == ZelStyleChangeEventInitial ? 1 : 0;
    if (style) {
        (void)style->labelColor();
    }
}

Stage::Stage() {
    NSUserDefaults::standardUserDefaults().setStore(std::make_shared<NSUserDefaultsInMemory>());
    NSApplication::sharedApplication();
    ZelStyleManager::setup();
    painted.emplace_back(addStyle(domain->lightScheme(), "main"));
    domain->defaultScheme()->addStyle(painted.front().style); // as the set-up does
    painted.emplace_back(addStyle(domain->darkScheme(), "main"));
    painted.emplace_back(addStyle(editor->defaultScheme(), "main"));
    for (PaintedStyle& each : painted) {
        followers.push_back(each.style->inheritedStyleWithChanges(
            [](const auto& parent, const auto& child) {
                child->setAccentColor(parent->labelColor());
            },
            "card", each.style->scheme()));
    }
    for (const char* identifier : {"default", "editor"}) {
        for (int i = 0; i < 3; ++i) {
            const auto above = i > 0 ? targets.back() : nullptr;
            targets.push_back(std::make_shared<Member>(identifier, above));
        }
    }
}

bool Stage::knows(const std::shared_ptr<ZelStyle>& style) const {
    for (const PaintedStyle& each : painted) {
        if (each.style == style) {
            return true;
        }
    }
    return std::ranges::find(followers, style) != followers.end();
}

} // namespace zeltest
