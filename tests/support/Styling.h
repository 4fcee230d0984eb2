// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/ZelStyleKit.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zeltest {

/// A fresh library around each test: defaults in memory, no domain, nothing queued, a light system.
/// The application object is made before the appearance tracker, which therefore observes it.
class StylingTests : public testing::Test {
protected:
    StylingTests() { freshen(); }
    ~StylingTests() override { freshen(); }

    static void makeSystem(std::string_view appearanceName) {
        zel::NSApplication::sharedApplication()->setEffectiveAppearance(
            zel::NSAppearance::appearanceNamed(appearanceName));
    }
    /// Makes the system dark or light and lets everybody hear of it.
    static void makeSystemDark() {
        makeSystem("NSAppearanceNameDarkAqua");
        zel::NSMainQueue::mainQueue().drain();
    }
    static void makeSystemLight() {
        makeSystem("NSAppearanceNameAqua");
        zel::NSMainQueue::mainQueue().drain();
    }

private:
    static void freshen() {
        zel::NSUserDefaults::standardUserDefaults().setStore(
            std::make_shared<zel::NSUserDefaultsInMemory>());
        zel::NSMainQueue::mainQueue().setWakeHook(nullptr);
        zel::ZelStyleDomain::domainForIdentifier("_reset");
        makeSystem("NSAppearanceNameAqua");
        zel::ZelStyleSystemAppearance::sharedSystemAppearance()->determineFromSystemAppearance();
        while (zel::NSMainQueue::mainQueue().drain() > 0) {
        }
    }
};

/// A root style, filled with the default values for a scheme and added to it.
inline std::shared_ptr<zel::ZelStyle> addStyle(const std::shared_ptr<zel::ZelStyleScheme>& scheme,
                                               std::string_view identifier) {
    auto style = zel::alloc<zel::ZelStyle>()->initWithIdentifier(identifier, scheme);
    scheme->addStyle(style);
    return style;
}

/// A style that inherits from another, in the same scheme, without following its updates.
inline std::shared_ptr<zel::ZelStyle> addChildStyle(const std::shared_ptr<zel::ZelStyle>& parent,
                                                    std::string_view identifier) {
    const auto scheme = parent->scheme();
    auto style = zel::alloc<zel::ZelStyle>()->initWithIdentifier(identifier, scheme, parent);
    scheme->addStyle(style);
    return style;
}

using OnStyleChange =
    std::function<void(const std::shared_ptr<zel::ZelStyle>&, zel::ZelStyleChangeEvent)>;

/// An object that is not styleable; as a change handler object it passes its calls on.
class Plain : public zel::NSObject {
public:
    OnStyleChange onStyleChange;

    void styleChangedWithEvent(const std::shared_ptr<zel::ZelStyle>& style,
                               zel::ZelStyleChangeEvent event) override {
        if (onStyleChange) {
            onStyleChange(style, event);
        }
    }
};

/// A styleable object whose every answer the test sets; owns its parent.
class Styled : public zel::NSObject, public zel::ZelStyleable {
public:
    std::optional<std::string> domainIdentifier;
    std::shared_ptr<zel::NSObject> parent;
    std::optional<std::vector<std::shared_ptr<zel::NSObject>>> associated;
    OnStyleChange onStyleChange;
    mutable int parentRequests = 0;  // how often somebody asked for the parent
    std::function<void()> whenAsked; // done then

    const zel::ZelStyleable* asZelStyleable() const noexcept override { return this; }
    std::optional<std::string> domainIdentifierOfZelStyleable() const override {
        return domainIdentifier;
    }
    std::shared_ptr<zel::NSObject> parentZelStyleable() const override {
        ++parentRequests;
        if (whenAsked) {
            whenAsked();
        }
        return parent;
    }
    std::optional<std::vector<std::shared_ptr<zel::NSObject>>>
    associatedZelStyleables() const override {
        return associated;
    }
    void styleChangedWithEvent(const std::shared_ptr<zel::ZelStyle>& style,
                               zel::ZelStyleChangeEvent event) override {
        if (onStyleChange) {
            onStyleChange(style, event);
        }
    }
};

/// One whose links the library knows.
class Linked : public Styled {
public:
    zel::ZelStyleableNode node{*this};
    const zel::ZelStyleableNode* zelStyleableNode() const noexcept override { return &node; }
};

inline std::shared_ptr<Styled> makeStyled(std::shared_ptr<zel::NSObject> parent = nullptr) {
    auto styled = zel::alloc<Styled>();
    styled->init();
    styled->parent = std::move(parent);
    return styled;
}

inline std::shared_ptr<Plain> makePlain() {
    auto plain = zel::alloc<Plain>();
    plain->init();
    return plain;
}

} // namespace zeltest
