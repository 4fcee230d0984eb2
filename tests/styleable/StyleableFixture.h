// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/support/Recorder.h"
#include "tests/support/Styling.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zeltest {

/// A styleable object that counts the notifications it is the target of: each asks it once for its
/// associated objects.
class Target : public Styled {
public:
    mutable int notifications = 0;

    std::optional<std::vector<std::shared_ptr<zel::NSObject>>>
    associatedZelStyleables() const override {
        ++notifications;
        return Styled::associatedZelStyleables();
    }
};

/// The default domain with "main" and "accent" in its current scheme and "main" in its dark one.
class StyleableTests : public StylingTests {
protected:
    const std::shared_ptr<zel::ZelStyleDomain> domain = zel::ZelStyleDomain::defaultDomain();
    const std::shared_ptr<zel::ZelStyle> main = addStyle(domain->defaultScheme(), "main");
    const std::shared_ptr<zel::ZelStyle> accent = addStyle(domain->defaultScheme(), "accent");
    const std::shared_ptr<zel::ZelStyle> darkMain = addStyle(domain->darkScheme(), "main");
    const std::shared_ptr<Target> object = zel::alloc<Target>();
    Recorder recorder;
};

} // namespace zeltest
