// SPDX-License-Identifier: Apache-2.0
#include "tests/model/FreeLocks.h"

#include <chrono>
#include <future>
#include <stdexcept>
#include <thread>

namespace zeltest {

namespace {

void takeEveryLock(const Player<LibraryKit>& player) {
    const auto stranger = zel::alloc<zel::NSObject>();
    for (const auto& style : player.styles) {
        if (style) {
            (void)style->valueForAttribute("labelColor");
            style->removeStyleUpdateObserverWithOwner(stranger);
        }
    }
    for (const auto& scheme : player.schemes) {
        if (scheme) {
            (void)scheme->styleForIdentifier("main");
        }
    }
    for (const auto& domain : player.domains) {
        if (domain) {
            domain->unregisterChangeHandlersWithOwner(stranger);
            domain->unregisterChangeHandler(stranger);
            (void)domain->schemeForIdentifier("default");
        }
    }
    const auto style = zel::alloc<zel::ZelStyle>();
    style->init();
    style->updateStyleWithChanges(nullptr); // one at a time in the process
    (void)zel::ZelStyleDomain::domainForIdentifier("for a look at the registry's lock");
    (void)zel::ZelStyleManager::sharedStyleManager()->activeMode();
}

} // namespace

void requireFreeLocks(const Player<LibraryKit>& player) {
    std::packaged_task<void()> task([&] { takeEveryLock(player); });
    auto done = task.get_future();
    std::thread thread(std::move(task));
    constexpr std::chrono::seconds patience{20}; // far longer than it takes
    if (done.wait_for(patience) != std::future_status::ready) {
        thread.detach();
        throw std::runtime_error("an exception has left a lock");
    }
    thread.join();
    done.get();
}

} // namespace zeltest
