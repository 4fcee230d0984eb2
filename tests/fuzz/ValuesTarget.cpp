// SPDX-License-Identifier: Apache-2.0
// Colours and style values. A line of an input is one of
//   color SPACE N N N N N      a colour by itself: its conversions and effects
//   set STYLE KEY VALUE        writes into a style: 0, its child 1 that follows it, 1's child 2
//                              that doesn't, or 2's child 3 that follows 2
//   update STYLE KEY VALUE     the same, as an update that everybody is told of
//   cancel STYLE KEY VALUE     the same, as an update that is cancelled
//   read STYLE KEY             reads all that can be read of it
// A value is c SPACE N N N N N, d N, u N, l N, b N, s TEXT, or nothing for nil.
#include "tests/fuzz/ColorChecks.h"
#include "tests/fuzz/Require.h"
#include "tests/fuzz/Script.h"
#include "tests/fuzz/StyleChain.h"

#include <cstdint>
#include <optional>

namespace zelfuzz {
namespace {

NSColor colorFrom(Script& script) {
    const auto& space = spaceNumbered(script.letter());
    NSColor::Components components{};
    for (double& component : components) {
        component = script.number();
    }
    return NSColor::colorWithColorSpace(space, components);
}

NSNumber numberFrom(char kind, Script& script) {
    switch (kind) {
    case 'd':
        return NSNumber::numberWithDouble(script.number());
    case 'u':
        return NSNumber::numberWithUnsignedLong(script.integer());
    case 'l':
        return NSNumber::numberWithLong(static_cast<std::int64_t>(script.integer()));
    default:
        return NSNumber::numberWithBool(script.integer() % 2 != 0);
    }
}

Value valueFrom(Script& script) {
    switch (const char kind = script.letter()) {
    case 'c':
        return colorFrom(script);
    case 'd':
    case 'u':
    case 'l':
    case 'b': {
        const NSNumber number = numberFrom(kind, script);
        checkNumber(number);
        return number;
    }
    case 's':
        return zel::ZelAttributeValue(script.textToLineEnd());
    default:
        return zel::NSNull{};
    }
}

void run(Script script) {
    constexpr std::size_t mostLines = 64;
    std::optional<StyleChain> chain; // costs more than most of what is done with it
    for (std::size_t line = 0; line < mostLines && script.nextLine(); ++line) {
        const std::string_view word = script.word();
        if (word == "color") {
            checkColor(colorFrom(script), script.number());
            continue;
        }
        const std::size_t style = static_cast<unsigned char>(script.letter()) % StyleChain::length;
        const std::string key = script.text();
        if (!chain) {
            chain.emplace();
        }
        if (word == "set") {
            chain->set(style, key, valueFrom(script));
        } else if (word == "update" || word == "cancel") {
            chain->update(style, key, valueFrom(script), word == "update");
        }
        chain->check(style, key);
    }
    if (chain) {
        chain->checkAll();
    }
}

} // namespace
} // namespace zelfuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    zelfuzz::run(zelfuzz::Script({reinterpret_cast<const char*>(data), size}));
    return 0;
}
