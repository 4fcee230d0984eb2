// SPDX-License-Identifier: Apache-2.0
#include "tests/model/FreeLocks.h"

#include <future>
#include <thread>
#include <utility>
#include <vector>

namespace zeltest {

namespace {

/// What has locks of its own; held, so that a thread that waits for one of them has it for good.
struct Lockable {
    std::vector<std::shared_ptr<zel::ZelStyle>> styles;
    std::vector<std::shared_ptr<zel::ZelStyleScheme>> schemes;
    std::vector<std::shared_ptr<zel::ZelStyleDomain>> domains;
    std::vector<std::shared_ptr<zel::ZelStyleManager>> managers;
};

template <class Held>
void add(std::vector<std::shared_ptr<Held>>& list, const std::shared_ptr<Held>& each) {
    if (each) {
        list.push_back(each);
    }
}

/// Looked up on the thread that plays, which waits for no lock that it has left itself.
Lockable lockableOf(const Player<LibraryKit>& player) {
    Lockable found;
    for (const auto& style : player.styles) {
        for (auto each = style; each; each = each->parentStyle()) {
            found.styles.push_back(each);
        }
    }
    for (const auto& domain : player.domains) {
        add(found.domains, domain);
        add(found.schemes, domain ? domain->currentScheme() : nullptr);
    }
    for (const auto& scheme : player.schemes) {
        add(found.schemes, scheme);
    }
    for (const auto& scheme : found.schemes) {
        for (const auto& [identifier, style] : scheme->stylesByIdentifier()) {
            add(found.styles, style);
        }
    }
    found.managers.push_back(zel::ZelStyleManager::sharedStyleManager());
    for (const auto& manager : player.managers) {
        add(found.managers, manager);
    }
    return found;
}

void takeEveryLock(const Lockable& found) {
    const auto stranger = zel::alloc<zel::NSObject>();
    for (const auto& style : found.styles) {
        (void)style->valueForAttribute("labelColor");
        style->removeStyleUpdateObserverWithOwner(stranger); // its own lock, then its observers'
    }
    for (const auto& scheme : found.schemes) {
        (void)scheme->styleForIdentifier("main");
    }
    for (const auto& domain : found.domains) {
        domain->unregisterChangeHandlersWithOwner(stranger);
        domain->unregisterChangeHandler(stranger);
        (void)domain->schemeForIdentifier("default");
    }
    for (const auto& manager : found.managers) {
        (void)manager->activeMode();
    }
    const auto style = zel::alloc<zel::ZelStyle>();
    style->init();
    style->updateStyleWithChanges(nullptr); // one at a time in the process
    (void)zel::ZelStyleDomain::domainForIdentifier("for a look at the registry's lock");
    LibraryKit::unobserveType(stranger);
    LibraryKit::unobservePosts(stranger);
}

} // namespace

bool locksAreFree(const Player<LibraryKit>& player, std::chrono::duration<double> patience) {
    std::packaged_task<void()> task([found = lockableOf(player)] { takeEveryLock(found); });
    auto done = task.get_future();
    std::thread thread(std::move(task));
    if (done.wait_for(patience) != std::future_status::ready) {
        thread.detach();
        return false;
    }
    thread.join();
    done.get();
    return true;
}

} // namespace zeltest
