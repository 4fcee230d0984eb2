// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/model/plain/Style.h"

#include <set>

namespace plain {

class Provider : public Object {
public:
    using ProviderBlock = std::function<void(const Ref<Style>&, const Ref<Scheme>&)>;
    using ApplyBlock = std::function<void(const Ref<Style>&, const Ref<Scheme>&,
                                          const Ref<Provider>&, const Ref<Provider>&)>;

    static Ref<Provider>
    providerWithIdentifier(const std::string& identifier,
                           const std::optional<std::vector<std::string>>& afterRunning,
                           ProviderBlock usingBlock);
    Id identifier() const { return identifier_; }
    void setWillApplyBlock(ApplyBlock block) { willApply_ = std::move(block); }
    void setDidApplyBlock(ApplyBlock block) { didApply_ = std::move(block); }

private:
    friend void setUpDefaultValues(const Ref<Style>& style, const Ref<Scheme>& scheme);
    static void run(const Ref<Provider>& provider, const Ref<Style>& style,
                    const Ref<Scheme>& scheme);

    std::string identifier_;
    std::set<std::string> required_;
    ProviderBlock block_;
    ApplyBlock willApply_, didApply_;
};

/// Runs the registered providers over a new root.
void setUpDefaultValues(const Ref<Style>& style, const Ref<Scheme>& scheme);

/// What the two providers of every process write.
void provideBase(Style& style, const Ref<Scheme>& scheme);
void provideMain(Style& style, const Ref<Scheme>& scheme);

} // namespace plain
