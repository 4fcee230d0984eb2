// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/Export.h>

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace zel::inline v1 {

class NSObject;

/// A posted notification: its name and its sender (nil where it has none).
struct NSNotification {
    std::string name;
    std::shared_ptr<NSObject> object;
};

/// Delivers notifications by name to observers.
/// Owns: the callbacks. Refers to: observers, weakly; one that has ended is never called.
/// Threads: any thread, in handlers and destructors as well; a post calls on its own thread, with
/// no private lock held, the observers there were when it began, skipping those removed meanwhile.
/// Failure: none; a callback's exception passes to who posted.
class ZEL_EXPORT NSNotificationCenter {
public:
    using Callback = std::function<void(const NSNotification&)>;

    NSNotificationCenter();
    ~NSNotificationCenter();
    NSNotificationCenter(const NSNotificationCenter&) = delete;
    NSNotificationCenter& operator=(const NSNotificationCenter&) = delete;

    /// `defaultCenter`
    static NSNotificationCenter& defaultCenter();

    /// `addObserver:selector:name:object:`, the selector a callback; a nil object is any sender.
    /// The callback must not hold the observer strongly.
    void addObserver(const std::shared_ptr<NSObject>& observer, Callback callback,
                     std::string_view name, const std::shared_ptr<NSObject>& object);
    /// `removeObserver:name:object:`; a nil object removes the registrations for every sender.
    /// Usable from the observer's destructor.
    void removeObserver(const NSObject& observer, std::string_view name,
                        const std::shared_ptr<NSObject>& object);
    /// `postNotificationName:object:`
    void postNotificationName(std::string_view name, const std::shared_ptr<NSObject>& object);

private:
    struct Registrations;
    const std::shared_ptr<Registrations> registrations_;
};

} // namespace zel::inline v1
