// SPDX-License-Identifier: Apache-2.0
#include "tests/fuzz/StyleChain.h"

#include "tests/fuzz/ColorChecks.h"
#include "tests/fuzz/Require.h"

#include <ZelStyleKit/ZelStyleScheme.h>

#include <algorithm>

namespace zelfuzz {
namespace {

bool isSame(const Value& a, const Value& b) {
    if (a.color() != nullptr && b.color() != nullptr) {
        return areSameBits(*a.color(), *b.color());
    }
    if (a.number() != nullptr && b.number() != nullptr) {
        return areSameBits(*a.number(), *b.number());
    }
    return a == b;
}

bool isSame(const std::optional<Value>& a, const std::optional<Value>& b) {
    return a && b ? isSame(*a, *b) : a.has_value() == b.has_value();
}

template <class Values>
std::optional<Value> valueIn(const Values& values, const std::string& key) {
    const auto found = values.find(key);
    return found == values.end() ? std::nullopt : std::optional<Value>(found->second);
}

bool isSameKind(const std::optional<NSColor>& a, const std::optional<Value>& b) {
    const NSColor* const color = b ? b->color() : nullptr;
    return color != nullptr ? a && areSameBits(*a, *color) : !a;
}

bool isSameKind(const std::optional<NSNumber>& a, const std::optional<Value>& b) {
    const NSNumber* const number = b ? b->number() : nullptr;
    return number != nullptr ? a && areSameBits(*a, *number) : !a;
}

} // namespace

StyleChain::StyleChain() {
    const auto scheme = zel::alloc<zel::ZelStyleScheme>()->initWithIdentifier("fuzz", nullptr);
    nodes_[0].style = zel::alloc<zel::ZelStyle>()->initWithIdentifier("main", scheme);
    const auto defaults = nodes_[0].style->effectiveValues();
    nodes_[0].own = Values(defaults->begin(), defaults->end());
    for (std::size_t i = 1; i < length; ++i) {
        nodes_[i].follows = i != 2;
        zel::ZelStyle::InheritedChanges changes;
        if (nodes_[i].follows) {
            changes = [](const auto&, const auto&) {};
        }
        nodes_[i].style =
            nodes_[i - 1].style->inheritedStyleWithChanges(std::move(changes), "child", nullptr);
    }
}

void StyleChain::set(std::size_t style, const std::string& key, const Value& value) {
    Node& node = nodes_[style];
    node.style->setValue(value.isNull() ? std::nullopt : std::optional(value), key);
    node.own.insert_or_assign(key, value);
    node.merged.reset();
    written_.insert(key);
}

void StyleChain::update(std::size_t style, const std::string& key, const Value& value,
                        bool accepted) {
    const std::uint64_t seed = nodes_[style].style->seed();
    nodes_[style].style->updateStyleWithChanges([&](const auto& updated) {
        require(updated == nodes_[style].style, "the style itself is updated");
        set(style, key, value);
        return accepted;
    });
    require(nodes_[style].style->seed() == seed + (accepted ? 1 : 0),
            "an update that counts moves its seed", key);
    for (std::size_t below = style + 1; accepted && below < length && nodes_[below].follows;
         ++below) {
        nodes_[below].merged.reset();
    }
}

const StyleChain::Values& StyleChain::mergedOf(std::size_t style) {
    Node& node = nodes_[style];
    if (!node.merged) {
        Values merged = style > 0 ? mergedOf(style - 1) : Values();
        for (const auto& [key, value] : node.own) {
            if (style > 0 && value.isNull()) {
                merged.erase(key);
            } else {
                merged.insert_or_assign(key, value);
            }
        }
        node.merged = std::move(merged);
    }
    return *node.merged;
}

void StyleChain::check(std::size_t style, const std::string& key) {
    const zel::ZelStyle& read = *nodes_[style].style;
    require(isSame(read.valueForAttribute(key), valueIn(nodes_[style].own, key)),
            "an own value has every bit that was written", key);
    const std::optional<Value> expected = valueIn(mergedOf(style), key);
    const bool isAbsent = !expected || expected->isNull();
    require(isSame(read.effectiveValueForAttribute(key), isAbsent ? std::nullopt : expected),
            "an effective value has every bit that was written", key);
    require(isSame(valueIn(*read.effectiveValues(), key), expected),
            "a snapshot has every bit that was written", key);
}

/// The typed accessors: the value where it is of their kind.
void StyleChain::checkTyped(std::size_t style) {
    const zel::ZelStyle& read = *nodes_[style].style;
    const Values& merged = mergedOf(style);
#define ZELFUZZ_CHECK(key, Key, Kind, group)                                                       \
    require(isSameKind(read.key(), valueIn(merged, #key)), "a typed read has every bit", #key);
    ZEL_STYLE_ATTRIBUTES(ZELFUZZ_CHECK)
#undef ZELFUZZ_CHECK
}

void StyleChain::checkAll() {
    for (std::size_t style = length; style-- > 0;) {
        const auto snapshot = nodes_[style].style->effectiveValues();
        const Values& merged = mergedOf(style);
        require(std::ranges::equal(*snapshot, merged,
                                   [](const auto& a, const auto& b) {
                                       return a.first == b.first && isSame(a.second, b.second);
                                   }),
                "a snapshot has what was written and nothing else");
        for (const std::string& key : written_) {
            check(style, key);
        }
        checkTyped(style);
    }
}

} // namespace zelfuzz
