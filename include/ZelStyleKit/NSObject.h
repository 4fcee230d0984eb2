// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/Export.h>
#include <ZelStyleKit/ZelStyleChangeEvent.h>
#include <ZelStyleKit/ZelStyleToken.h>

#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

namespace zel::inline v1 {

class Attachment;
class NSObject;
class ZelStyleable;

/// Whether key-value observers are called before a change as well as after it.
enum class NSKeyValueObservingOptions : unsigned { Default = 0, Prior = 1 };

/// What a key-value observer is called with: `isPrior` before the value is stored (only
/// with `NSKeyValueObservingOptions::Prior`), not prior after it.
struct NSKeyValueChange {
    bool isPrior = false;
};

/// Root of every class with reference semantics.
/// Owns: what is attached to it (one pointer; nothing is allocated until something is).
/// Refers to: nothing; observers and listeners hold it weakly.
/// Threads: any, in handlers and destructors as well; docs/threads.md says it of each operation.
/// Failure: an informal operation that a class doesn't answer raises `std::logic_error`.
/// Lifetime: made by `alloc<T>()`, held by `std::shared_ptr`; nil is `nullptr`. When it ends,
/// every table keyed by it drops its entry before the destructor returns.
class ZEL_EXPORT NSObject : public std::enable_shared_from_this<NSObject> {
public:
    NSObject() noexcept = default;
    NSObject(const NSObject&) = delete;
    NSObject& operator=(const NSObject&) = delete;
    virtual ~NSObject();

    /// `init`. Answers the receiver, or nothing where initialisation failed.
    virtual std::shared_ptr<NSObject> init();

    /// The object as a styleable, or `nullptr` when its class doesn't declare `ZelStyleable`.
    /// A class that derives from `ZelStyleable` overrides this with `return this;`.
    [[nodiscard]] virtual const ZelStyleable* asZelStyleable() const noexcept { return nullptr; }

    /// `style:changedWithEvent:`, what a change handler object answers. No class has to declare
    /// it: one that is registered as a change handler object overrides it. Runs as a change handler
    /// does: see `ZelStyleChangeHandler`.
    virtual void styleChangedWithEvent(const std::shared_ptr<ZelStyle>& style,
                                       ZelStyleChangeEvent event);

    /// `registerStyleableChangeHandler:`. Registers with the object's own domain, the object as
    /// owner; false, and nothing registered, when the object is not styleable.
    bool registerStyleableChangeHandler(ZelStyleChangeHandler handler);

    /// `unregisterStyleableChangeHandlers`. True for every styleable object, handlers or not.
    bool unregisterStyleableChangeHandlers();

    /// `customZelStyleIdentifier`; absent until set.
    [[nodiscard]] std::optional<std::string> customZelStyleIdentifier() const;

    /// `setCustomZelStyleIdentifier:`. Stores, then, where the object is styleable, notifies it and
    /// everything below it. Deliberate: the same identifier again notifies again.
    void setCustomZelStyleIdentifier(std::optional<std::string_view> identifier);

    /// `customZelStyleSchemeIdentifier`; absent until set.
    [[nodiscard]] std::optional<std::string> customZelStyleSchemeIdentifier() const;

    /// `setCustomZelStyleSchemeIdentifier:`, like `setCustomZelStyleIdentifier`.
    void setCustomZelStyleSchemeIdentifier(std::optional<std::string_view> identifier);

    /// `lastZelStyle`: which style was delivered last. It can be compared and not dereferenced, and
    /// it stays when that style ends.
    [[nodiscard]] ZelStyleToken lastZelStyle() const noexcept;

    /// `setLastZelStyle:`. Stores only.
    void setLastZelStyle(ZelStyleToken style);

    /// `addObserver:forKeyPath:options:context:`. The observer is held weakly; the same observer
    /// may observe a key path several times with different contexts. Any thread.
    void addObserver(const std::shared_ptr<NSObject>& observer, std::string_view forKeyPath,
                     NSKeyValueObservingOptions options, const void* context);

    /// `removeObserver:forKeyPath:context:`. Harmless where there is nothing to remove; usable
    /// from the observer's destructor.
    void removeObserver(const NSObject& observer, std::string_view forKeyPath, const void* context);

    /// `willChangeValueForKey:` and `didChangeValueForKey:`. Observers are called on this thread,
    /// in the order in which they were added, with no private lock held.
    void willChangeValueForKey(std::string_view key);
    void didChangeValueForKey(std::string_view key);

    /// `observeValueForKeyPath:ofObject:change:context:`. Does nothing unless overridden.
    virtual void observeValueForKeyPath(std::string_view keyPath, NSObject& ofObject,
                                        const NSKeyValueChange& change, const void* context);

private:
    friend class Attachment;
    mutable std::atomic<Attachment*> attachments_{nullptr};
};

/// `alloc`: an object of class T that still wants an initialiser.
template <class T>
[[nodiscard]] std::shared_ptr<T> alloc() {
    static_assert(std::is_base_of_v<NSObject, T>, "alloc makes objects of classes under NSObject");
    static_assert(
        !std::is_base_of_v<ZelStyleable, T> ||
            !std::is_same_v<decltype(&T::asZelStyleable), decltype(&NSObject::asZelStyleable)>,
        "a class under ZelStyleable overrides asZelStyleable() with `return this;`");
    return std::make_shared<T>();
}

} // namespace zel::inline v1
