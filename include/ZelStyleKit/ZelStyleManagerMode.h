// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/NSObject.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace zel::inline v1 {

class ZelStyleManager;

/// Identifiers of the modes that every application has. Modifiable variables with fixed strings.
extern ZEL_EXPORT std::string_view ZelStyleManagerModeIdentifierLight;
extern ZEL_EXPORT std::string_view ZelStyleManagerModeIdentifierDark;
extern ZEL_EXPORT std::string_view ZelStyleManagerModeIdentifierFollowSystem;

/// An appearance that a user can choose.
/// Owns: its identifier and names. Refers to: its manager, weakly.
/// Threads: accessors are atomic; applying switches schemes on the calling thread, the main one; in
/// handlers and destructors as well.
/// Failure: applying a mode of no identifier, or of one unknown to the library, does nothing.
class ZEL_EXPORT ZelStyleManagerMode : public NSObject {
public:
    ZelStyleManagerMode();
    ~ZelStyleManagerMode() override;

    /// `initWithIdentifier:rank:name:`
    std::shared_ptr<ZelStyleManagerMode>
    initWithIdentifier(std::optional<std::string_view> identifier, std::uint64_t rank,
                       std::optional<std::string_view> name);

    /// `active`. Deliberate: never set by the library, so always false.
    [[nodiscard]] bool active() const noexcept { return false; }
    /// `setActive:`. True applies the mode to the default domain. Deliberate: the flag isn't
    /// stored, so that a mode is applied afresh whenever it is chosen; false does nothing.
    void setActive(bool active);

    // A list is sorted when a mode is added, by rank, lowest first, then by name, those without one
    // first; changing either here doesn't move the mode.

    /// `manager`, `setManager:`
    [[nodiscard]] std::shared_ptr<ZelStyleManager> manager() const;
    void setManager(const std::shared_ptr<ZelStyleManager>& manager);
    /// `identifier`, `setIdentifier:`. A mode without one can't be chosen.
    [[nodiscard]] std::optional<std::string> identifier() const;
    void setIdentifier(std::optional<std::string_view> identifier);
    /// `name`, `setName:`
    [[nodiscard]] std::optional<std::string> name() const;
    void setName(std::optional<std::string_view> name);
    /// `rank`, `setRank:`
    [[nodiscard]] std::uint64_t rank() const;
    void setRank(std::uint64_t rank);

private:
    friend class ZelStyleManager;
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace zel::inline v1
