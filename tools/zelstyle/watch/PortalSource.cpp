// SPDX-License-Identifier: Apache-2.0
#include "tools/zelstyle/watch/PortalSource.h"

#include "tools/zelstyle/terminal/Message.h"

#include <ZelStyleKit/ZelPortalAppearance.h>

#include <string>
#include <utility>

namespace zel::tool {
namespace {

std::string_view nameOf(ZelPortalStatus status) {
    switch (status) {
    case ZelPortalStatus::Stopped:
        return "stopped";
    case ZelPortalStatus::Connecting:
        return "connecting";
    case ZelPortalStatus::Following:
        return "following";
    case ZelPortalStatus::NoBus:
        return "no bus";
    case ZelPortalStatus::NoPortal:
        return "no portal";
    case ZelPortalStatus::NoAnswer:
        return "no answer";
    case ZelPortalStatus::Lost:
        return "lost";
    }
    return "unknown status";
}

void tell(ZelPortalStatus status, const std::string& reason) {
    printMessage("portal: " + std::string(nameOf(status)) + (reason.empty() ? "" : ": ") + reason);
}

class PortalSource final : public AppearanceSource {
public:
    /// What happens during the wait is told by how it ends.
    ZelPortalStatus start(std::chrono::milliseconds wait) {
        ZelPortalOptions options;
        options.statusChanged = [this](ZelPortalStatus status, const std::string& reason) {
            if (tells_) {
                tell(status, reason);
            }
        };
        portal_.start(std::move(options));
        return portal_.waitForFirstAnswer(wait);
    }
    void tellFromNowOn() {
        tells_ = true;
        tell(portal_.status(), portal_.reason());
    }

    [[nodiscard]] int fileDescriptor() const override { return portal_.fileDescriptor(); }
    [[nodiscard]] short events() const override { return portal_.events(); }
    [[nodiscard]] std::optional<std::chrono::microseconds> nextTimeout() const override {
        return portal_.nextTimeout();
    }
    bool process(short /*ready*/) override {
        portal_.process();
        return true;
    }
    [[nodiscard]] int exitCode() const override { return 0; }

private:
    bool tells_ = false;
    ZelPortalAppearance portal_; // goes first: its callback reads what is above
};

} // namespace

bool portalIsBuiltIn() noexcept {
    return true;
}

std::unique_ptr<AppearanceSource> followPortal(std::chrono::milliseconds wait, bool onlyOnABus) {
    auto source = std::make_unique<PortalSource>();
    if (source->start(wait) == ZelPortalStatus::NoBus && onlyOnABus) {
        return nullptr;
    }
    source->tellFromNowOn();
    return source;
}

} // namespace zel::tool
