// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/Export.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

namespace zel::inline v1 {

class NSObject;

/// A styleable object's place in a tree whose links the library knows, so that a change reaches
/// what is below it by walking down instead of by asking every listener for its parents. An object
/// that has one answers it from `ZelStyleable::zelStyleableNode`, and its `parentZelStyleable` is
/// then the object of its node's parent, always. Owns: nothing. Refers to: its object, whose member
/// it is, and its neighbours, which are told when it ends. Threads: any, in handlers and
/// destructors as well; links are read and changed under one lock of the process, held for no
/// callback. Failure: none; the host sees to it that no node is put below itself.
class ZEL_EXPORT ZelStyleableNode {
public:
    /// The node of an object; it ends with the object, before its `NSObject` does.
    explicit ZelStyleableNode(NSObject& object) noexcept : object_(object) {}
    /// Leaves the tree; the nodes below become roots.
    ~ZelStyleableNode();
    ZelStyleableNode(const ZelStyleableNode&) = delete;
    ZelStyleableNode& operator=(const ZelStyleableNode&) = delete;

    /// Leaves the tree before its end, and lets those below go; for an object's destructor that
    /// runs others' code.
    void leave() noexcept;

    /// Puts the node, with all that is below it, below another one, or nowhere. Notifies nobody.
    void setParent(ZelStyleableNode* parent) noexcept;

    [[nodiscard]] NSObject& object() const noexcept { return object_; }

private:
    friend struct StyleableTree;
    /// Which identifiers apply to the object, by where they are kept, and as of which change.
    struct Remembered {
        std::atomic<std::uint64_t> epoch{0};
        std::atomic<const std::shared_ptr<const std::string>*> scheme{nullptr};
        std::atomic<const std::shared_ptr<const std::string>*> style{nullptr};
    };
    void detach() noexcept;

    // Guarded by one lock of the process, as are the nodes beside it.
    NSObject& object_;
    mutable Remembered remembered_; // read without the lock, too
    ZelStyleableNode* parent_ = nullptr;
    ZelStyleableNode* firstChild_ = nullptr;
    ZelStyleableNode* nextSibling_ = nullptr;
    ZelStyleableNode* previousSibling_ = nullptr; // nil for the first child
};

} // namespace zel::inline v1
