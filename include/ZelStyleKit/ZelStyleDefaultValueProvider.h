// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/NSObject.h>

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zel::inline v1 {

class ZelStyle;
class ZelStyleScheme;

/// Identifiers of the library's own providers. Modifiable variables that hold fixed strings.
extern ZEL_EXPORT std::string_view ZelStyleDefaultValueProviderIdentifierBase;
extern ZEL_EXPORT std::string_view ZelStyleDefaultValueProviderIdentifierMain;

/// A named callback that fills a new root style with default values, and hooks around the others'.
/// Owns: its identifier, requirements and callbacks (copies). Refers to: nothing.
/// Threads: accessors are atomic, in handlers and destructors as well; callbacks run on the thread
/// that makes a style, with no private lock held. They are called in place, so that what a functor
/// keeps lasts from run to run, are held while they run, and may replace themselves or make styles,
/// which runs them again. Runs are not serialised: a callback with state guards it itself where
/// styles are made on several threads. Failure: a provider without callback is an empty step that
/// still counts as applied. A callback must not change the registry of providers: the walk that
/// called it raises.
class ZEL_EXPORT ZelStyleDefaultValueProvider : public NSObject {
public:
    using ProviderBlock = std::function<void(const std::shared_ptr<ZelStyle>& style,
                                             const std::shared_ptr<ZelStyleScheme>& scheme)>;
    /// Called with (style, scheme, the provider that has the hook, the provider that runs).
    using ApplyBlock = std::function<void(
        const std::shared_ptr<ZelStyle>& style, const std::shared_ptr<ZelStyleScheme>& scheme,
        const std::shared_ptr<ZelStyleDefaultValueProvider>& provider,
        const std::shared_ptr<ZelStyleDefaultValueProvider>& applied)>;
    using Identifiers = std::set<std::string, std::less<>>;

    ZelStyleDefaultValueProvider();
    ~ZelStyleDefaultValueProvider() override;

    /// `providerWithIdentifier:afterRunning:using:`: a provider of that class, or nil where its
    /// initialiser answers nil.
    template <class Provider = ZelStyleDefaultValueProvider>
    static std::shared_ptr<Provider>
    providerWithIdentifier(std::string_view identifier,
                           const std::optional<std::vector<std::string>>& afterRunning,
                           ProviderBlock usingBlock) {
        return std::static_pointer_cast<Provider>(
            alloc<Provider>()->initWithIdentifier(identifier, afterRunning, std::move(usingBlock)));
    }

    /// `initWithIdentifier:afterRunning:using:`. An empty list is no requirement, as none is.
    std::shared_ptr<ZelStyleDefaultValueProvider>
    initWithIdentifier(std::string_view identifier,
                       const std::optional<std::vector<std::string>>& afterRunning,
                       ProviderBlock usingBlock);

    /// `provideDefaultValuesFor:withScheme:`
    virtual void provideDefaultValuesFor(const std::shared_ptr<ZelStyle>& style,
                                         const std::shared_ptr<ZelStyleScheme>& withScheme);
    /// `willApply:toStyle:withScheme:`
    virtual void willApply(const std::shared_ptr<ZelStyleDefaultValueProvider>& provider,
                           const std::shared_ptr<ZelStyle>& toStyle,
                           const std::shared_ptr<ZelStyleScheme>& withScheme);
    /// `didApply:toStyle:withScheme:`
    virtual void didApply(const std::shared_ptr<ZelStyleDefaultValueProvider>& provider,
                          const std::shared_ptr<ZelStyle>& toStyle,
                          const std::shared_ptr<ZelStyleScheme>& withScheme);

    /// `identifier`; absent before initialisation.
    [[nodiscard]] std::optional<std::string> identifier() const;

    /// `requiredDefaultValueProviders`, `setRequiredDefaultValueProviders:`: identifiers that must
    /// have run before; none: no requirement.
    [[nodiscard]] std::optional<Identifiers> requiredDefaultValueProviders() const;
    void setRequiredDefaultValueProviders(std::optional<Identifiers> required);

    // Blocks, empty where there is none. A read makes a copy of the block, with what it keeps at
    // that moment; calling the copy leaves the provider's as it is.

    /// `providerBlock`, `setProviderBlock:`
    [[nodiscard]] ProviderBlock providerBlock() const;
    void setProviderBlock(ProviderBlock block);
    /// `willApplyBlock`, `setWillApplyBlock:`
    [[nodiscard]] ApplyBlock willApplyBlock() const;
    void setWillApplyBlock(ApplyBlock block);
    /// `didApplyBlock`, `setDidApplyBlock:`
    [[nodiscard]] ApplyBlock didApplyBlock() const;
    void setDidApplyBlock(ApplyBlock block);

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace zel::inline v1
