// SPDX-License-Identifier: Apache-2.0
// The portable views, as a toolkit: a popup or dialog is a subview of the view that it belongs to.
#include "tests/contract/Toolkit.h"

#include <ZelStyleKit/ZelStyleKit.h>

#include <algorithm>
#include <vector>

#ifdef ZEL_CONTRACT_PORTAL
#include <ZelStyleKit/ZelPortalAppearance.h>
#include <poll.h>
#endif

namespace {

class ViewToolkit : public zeltest::Toolkit {
public:
    void connect() override {}
    void disconnect() override {
        windows_.clear();
#ifdef ZEL_CONTRACT_PORTAL
        portal_.stop();
#endif
    }

    Widget makeWindow() override {
        windows_.push_back(zel::alloc<zel::NSView>());
        return windows_.back().get();
    }
    Widget makeChild(Widget parent) override {
        const auto view = zel::alloc<zel::NSView>();
        viewOf(parent)->addSubview(view);
        return view.get();
    }
    Widget makePopup(Widget owner) override {
        return makeChild(owner);
    }
    Widget makeDialog(Widget ownerWindow) override {
        return makeChild(ownerWindow);
    }

    void move(Widget child, Widget newParent) override {
        const auto view = viewOf(child);
        viewOf(newParent)->addSubview(view);
        zel::ZelStyleDomain::domainForStyleable(view)->notifyForStyleChangeOf(view, {});
    }
    void destroy(Widget widget) override {
        viewOf(widget)->removeFromSuperview();
        std::erase_if(windows_, [&](const auto& each) { return each.get() == widget; });
    }
    std::shared_ptr<zel::NSObject> styleableOf(Widget widget) override {
        return viewOf(widget);
    }

    void run(std::chrono::milliseconds atMost) override {
        if (zel::NSMainQueue::mainQueue().drain() == 0) {
            wait(atMost);
        }
    }

    // Unless told otherwise the library itself keeps them there.
    void keepDefaultsAsApplicationsDo() override {
        zel::NSUserDefaults::standardUserDefaults().setStore(nullptr);
    }
#ifdef ZEL_CONTRACT_PORTAL
    void followDesktop() override {
        portal_.start();
        portal_.waitForFirstAnswer(std::chrono::seconds(20));
    }
#endif

private:
#ifdef ZEL_CONTRACT_PORTAL
    void wait(std::chrono::milliseconds atMost) {
        pollfd waitFor{portal_.fileDescriptor(), portal_.events(), 0};
        ::poll(&waitFor, 1, static_cast<int>(atMost.count()));
        portal_.process();
    }
#else
    static void wait(std::chrono::milliseconds /*atMost*/) {} // there is nothing to wait for
#endif
    static std::shared_ptr<zel::NSView> viewOf(Widget widget) {
        auto* const view = static_cast<zel::NSView*>(widget);
        return std::static_pointer_cast<zel::NSView>(view->shared_from_this());
    }

    std::vector<std::shared_ptr<zel::NSView>> windows_;
#ifdef ZEL_CONTRACT_PORTAL
    zel::ZelPortalAppearance portal_;
#endif
};

} // namespace

std::unique_ptr<zeltest::Toolkit> zeltest::makeToolkit(int& /*argc*/, char** /*argv*/) {
    return std::make_unique<ViewToolkit>();
}
