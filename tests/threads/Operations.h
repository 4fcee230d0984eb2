// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/support/Styling.h"
#include "tests/threads/Stage.h"

#include <string>
#include <vector>

namespace zeltest {

/// What operations are done to; shared by all who do them at once.
struct World {
    const std::shared_ptr<zel::ZelStyleDomain> domain = zel::ZelStyleDomain::defaultDomain();
    const std::shared_ptr<zel::ZelStyleScheme> scheme = domain->schemeForIdentifier("aside");
    const std::shared_ptr<zel::ZelStyle> parent = addStyle(scheme, "parent");
    const std::shared_ptr<zel::ZelStyle> style = addChildStyle(parent, "style");
    const std::shared_ptr<Member> object = std::make_shared<Member>(std::nullopt, nullptr);
    const std::shared_ptr<zel::ZelStyleDefaultValueProvider> provider =
        zel::ZelStyleDefaultValueProvider::providerWithIdentifier("aside", std::nullopt,
                                                                  [](const auto&, const auto&) {});
    const std::shared_ptr<zel::ZelStyleManager> manager = zel::alloc<zel::ZelStyleManager>();
    const std::shared_ptr<zel::ZelStyleManagerMode> mode =
        zel::alloc<zel::ZelStyleManagerMode>()->initWithIdentifier("aside", 1, "Aside");

    World() { manager->init(); }
};

/// A public operation, as docs/threads.md names it, and how it is done. It leaves the world as it
/// was, apart from what is written to styles and objects, and raises nothing.
struct Operation {
    std::string name;
    bool onAnyThread; ///< and not on the main one alone
    void (*run)(World& world);
};

/// All that is allowed in handlers and destructors.
const std::vector<Operation>& allOperations();

// By subject.
std::vector<Operation> styleOperations();
std::vector<Operation> domainOperations();
std::vector<Operation> appearanceOperations();
std::vector<Operation> platformOperations();

} // namespace zeltest
