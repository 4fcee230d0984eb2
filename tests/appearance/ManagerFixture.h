// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/support/Recorder.h"
#include "tests/support/Styling.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zel::inline v1 {

/// The tests' way to what a manager keeps to itself.
struct ZelStyleManagerInternals {
    static std::shared_ptr<ZelStyleManagerMode> shouldBeActiveMode(const ZelStyleManager& manager) {
        return manager._shouldBeActiveMode();
    }
    static void updateActiveMode(ZelStyleManager& manager) { manager._updateActiveMode(); }
};

} // namespace zel::inline v1

namespace zeltest {

using Mode = std::shared_ptr<zel::ZelStyleManagerMode>;

inline Mode makeMode(std::optional<std::string_view> identifier, std::uint64_t rank,
                     std::optional<std::string_view> name = std::nullopt) {
    return zel::alloc<zel::ZelStyleManagerMode>()->initWithIdentifier(identifier, rank, name);
}

inline Names identifiersOf(const zel::ZelStyleManager& manager) {
    Names identifiers;
    for (const auto& mode : manager.modes()) {
        identifiers.push_back(mode->identifier().value_or("nil"));
    }
    return identifiers;
}

/// A manager of the test's own, and the default domain with a main style each for light and dark.
/// What is set on the shared manager goes again.
class ManagerTests : public StylingTests {
protected:
    ManagerTests() {
        manager->init();
        addStyle(domain->defaultScheme(), "main");
    }
    ~ManagerTests() override {
        const auto& shared = zel::ZelStyleManager::sharedStyleManager();
        while (!shared->modes().empty()) {
            shared->removeMode(shared->modes().front());
        }
    }

    /// Adds the three modes that every application has.
    void addStandardModes() {
        manager->addMode(makeMode("always-light", 0, "Light"));
        manager->addMode(makeMode("always-dark", 10, "Dark"));
        manager->addMode(makeMode("follow-system", 100, "Follow system appearance"));
    }
    /// Has a listener record every switch of the default domain from now on.
    void listen() {
        domain->registerChangeHandler(recorder.handler("owner"), owner);
        recorder.take();
    }
    static void store(std::string_view identifier) {
        zel::NSUserDefaults::standardUserDefaults().setObject(
            zel::NSUserDefaultsValue(std::string(identifier)), "style-manager-active-mode");
    }
    static std::optional<zel::NSUserDefaultsValue> stored() {
        return zel::NSUserDefaults::standardUserDefaults().objectForKey(
            "style-manager-active-mode");
    }
    [[nodiscard]] bool isLight() const { return domain->currentScheme() == domain->lightScheme(); }
    [[nodiscard]] bool isDark() const { return domain->currentScheme() == domain->darkScheme(); }

    const std::shared_ptr<zel::ZelStyleDomain> domain = zel::ZelStyleDomain::defaultDomain();
    const std::shared_ptr<zel::ZelStyle> light = addStyle(domain->lightScheme(), "main");
    const std::shared_ptr<zel::ZelStyle> dark = addStyle(domain->darkScheme(), "main");
    const std::shared_ptr<zel::ZelStyleManager> manager = zel::alloc<zel::ZelStyleManager>();
    const std::shared_ptr<Plain> owner = makePlain();
    Recorder recorder;
};

/// What a text reads as when it comes out of the user defaults.
inline zel::NSUserDefaultsValue text(std::string_view value) {
    return zel::NSUserDefaultsValue(std::string(value));
}

} // namespace zeltest
