// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/NSObject.h>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace zel::inline v1 {

class ZelStyle;
class ZelStyleDomain;

/// Identifiers of the schemes that a domain makes by itself. Modifiable variables that hold fixed
/// strings.
extern ZEL_EXPORT std::string_view ZelStyleSchemeIdentifierDefault;
extern ZEL_EXPORT std::string_view ZelStyleSchemeIdentifierLight;
extern ZEL_EXPORT std::string_view ZelStyleSchemeIdentifierDark;

/// A named group of styles inside one domain.
/// Owns: its styles, by identifier; one style may stand in several schemes.
/// Refers to: its domain, weakly.
/// Threads: any, in handlers and destructors as well; a private lock guards the table.
/// Failure: adding or removing nil raises `ZelInvalidArgument` and changes nothing; a style without
/// identifier does so after its references were set or cleared.
class ZEL_EXPORT ZelStyleScheme : public NSObject {
public:
    using Styles = std::map<std::string, std::shared_ptr<ZelStyle>, std::less<>>;

    ZelStyleScheme();
    ~ZelStyleScheme() override;

    /// `initWithIdentifier:domain:`
    std::shared_ptr<ZelStyleScheme>
    initWithIdentifier(std::optional<std::string_view> identifier,
                       const std::shared_ptr<ZelStyleDomain>& domain);

    /// `addStyle:`. Ties the style to this scheme and its domain and stores it under its present
    /// identifier; a style replaced by that keeps its references.
    void addStyle(const std::shared_ptr<ZelStyle>& style);
    /// `removeStyle:`. Clears the style's references and removes the entry under its identifier.
    /// Deliberate: the entry goes even where it is another style's, which keeps its references.
    void removeStyle(const std::shared_ptr<ZelStyle>& style);
    /// `styleForIdentifier:`
    [[nodiscard]] std::shared_ptr<ZelStyle>
    styleForIdentifier(std::optional<std::string_view> identifier) const;

    [[nodiscard]] std::shared_ptr<ZelStyleDomain> domain() const;
    [[nodiscard]] std::optional<std::string> identifier() const;
    /// `stylesByIdentifier`: a copy of the table as it is now.
    [[nodiscard]] Styles stylesByIdentifier() const;
    /// `setStylesByIdentifier:`: replaces the whole table; the styles' references stay as they are.
    void setStylesByIdentifier(Styles styles);

private:
    struct State;
    const std::unique_ptr<State> state_;
};

} // namespace zel::inline v1
