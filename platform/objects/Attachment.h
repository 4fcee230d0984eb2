// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/NSObject.h>

#include <atomic>
#include <memory>

namespace zel::inline v1 {

/// A part of an object that it has only once somebody needs it. An object has at most one of each
/// kind, and owns it: all of them are destroyed with the object, the newest first.
/// Threads: finding and attaching any; destroying is the object's own destructor's.
class Attachment {
public:
    Attachment() = default;
    Attachment(const Attachment&) = delete;
    Attachment& operator=(const Attachment&) = delete;
    virtual ~Attachment();

    /// The object's attachment of that kind, or nothing.
    template <class Kind>
    [[nodiscard]] static Kind* find(const NSObject& object) noexcept {
        return static_cast<Kind*>(find(head(object), &kindOf<Kind>));
    }
    /// The object's attachment of that kind, made from the object where it has none.
    template <class Kind>
    [[nodiscard]] static Kind& of(const NSObject& object) {
        if (Kind* present = find<Kind>(object)) {
            return *present;
        }
        return static_cast<Kind&>(attach(object, std::make_unique<Kind>(object), &kindOf<Kind>));
    }
    /// For the object's destructor.
    static void destroyAll(NSObject& object) noexcept;

private:
    template <class Kind>
    static constexpr char kindOf = 0; // its address tells the kinds apart

    static Attachment* head(const NSObject& object) noexcept {
        return object.attachments_.load(std::memory_order_acquire);
    }
    static Attachment* find(Attachment* first, const void* kind) noexcept {
        while (first && first->kind_ != kind) {
            first = first->next_;
        }
        return first;
    }
    /// Adds one unless another thread has attached one of the kind meanwhile; answers the one there
    /// is.
    static Attachment& attach(const NSObject& object, std::unique_ptr<Attachment> made,
                              const void* kind);

    Attachment* next_ = nullptr;
    const void* kind_ = nullptr;
};

} // namespace zel::inline v1
