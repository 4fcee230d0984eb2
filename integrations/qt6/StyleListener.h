// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/NSObject.h>
#include <ZelStyleKit/ZelStyleable.h>
#include <ZelStyleKit/ZelStyleableNode.h>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <utility>

namespace zel::inline v1 {

class ZelStyle;

/// Listens to the style of an object from a place of its own below it: an object's first handler
/// alone hears of another style, and that one is the application's to register. What it tells is
/// for Qt's objects, which none but their own thread may touch: of a style that is updated on
/// another thread it tells later, on the main queue, once for however many updates.
/// Owns: its handler. Refers to: the object above, weakly. Threads: made, started and stopped on
/// the main thread, where the handler is called; delivered to on any. Failure: none.
class ZEL_EXPORT StyleListener final : public NSObject, public ZelStyleable {
public:
    using Handler = std::function<void(const std::shared_ptr<ZelStyle>&)>;

    /// Listens below an object, whose node is `node`, or, without one, to the main style.
    StyleListener(std::weak_ptr<NSObject> above, ZelStyleableNode* node)
        : above_(std::move(above)) {
        node_.setParent(node);
    }
    ~StyleListener() override { node_.leave(); }

    /// Calls the handler at once, then whenever the style is another one or has new values, until
    /// `stop`; it may call that itself.
    void start(Handler handler);
    /// The handler is called no more, whoever holds the listener on and whatever is still queued.
    void stop();

    [[nodiscard]] const ZelStyleable* asZelStyleable() const noexcept override { return this; }
    [[nodiscard]] std::optional<std::string> domainIdentifierOfZelStyleable() const override {
        return std::nullopt;
    }
    [[nodiscard]] std::shared_ptr<NSObject> parentZelStyleable() const override {
        return above_.lock();
    }
    [[nodiscard]] const ZelStyleableNode* zelStyleableNode() const noexcept override {
        return &node_;
    }

private:
    void tell(const std::shared_ptr<ZelStyle>& style);
    void tellLater();

    ZelStyleableNode node_{*this};
    const std::weak_ptr<NSObject> above_;
    const std::thread::id thread_ = std::this_thread::get_id();
    std::shared_ptr<const Handler> handler_; // of the main thread; none once stopped
    std::atomic<bool> isLate_ = false;       // something happened that is still to be told
};

} // namespace zel::inline v1
