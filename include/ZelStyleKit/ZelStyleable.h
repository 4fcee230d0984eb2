// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/Export.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zel::inline v1 {

class NSObject;
class ZelStyleableNode;

/// What an object answers to take part in styling: its class derives from `NSObject` and from this,
/// and overrides `NSObject::asZelStyleable` with `return this;`. Declaring is what counts; an
/// object is never probed for the operations.
/// Refers to: its parent (the answer is held only while it is used).
/// Threads: asked on whichever thread notifies or resolves, by a notification with the styling lock
/// of the process held, also in handlers and destructors.
/// Failure: none; nil is accepted everywhere.
class ZEL_EXPORT ZelStyleable {
public:
    virtual ~ZelStyleable();

    /// `domainIdentifierOfZelStyleable`: the domain that styles the object; nil is the default one.
    [[nodiscard]] virtual std::optional<std::string> domainIdentifierOfZelStyleable() const = 0;

    /// `parentZelStyleable`: the next object up; nil, or an object that is not styleable, ends the
    /// chain.
    [[nodiscard]] virtual std::shared_ptr<NSObject> parentZelStyleable() const = 0;

    /// `associatedZelStyleables` (optional): objects to notify whenever this one is a
    /// notification's target; absent unless overridden.
    [[nodiscard]] virtual std::optional<std::vector<std::shared_ptr<NSObject>>>
    associatedZelStyleables() const;

    /// The object's place in a tree whose links the library knows, always the same; nothing unless
    /// overridden: its parents are then asked for.
    [[nodiscard]] virtual const ZelStyleableNode* zelStyleableNode() const noexcept;

protected:
    ZelStyleable() = default;
    ZelStyleable(const ZelStyleable&) = default;
    ZelStyleable& operator=(const ZelStyleable&) = default;
};

/// The name under which the platform's views and view controllers conform: as they come, they are
/// styled by the default domain, below their superview or parent controller.
using ZelCustomStyle = ZelStyleable;

} // namespace zel::inline v1
