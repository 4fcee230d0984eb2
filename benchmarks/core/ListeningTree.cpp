// SPDX-License-Identifier: Apache-2.0
#include "core/ListeningTree.h"

namespace zel::inline v1 {

namespace {

struct SharedTree {
    std::string name;
    std::size_t size = 0;
    std::unique_ptr<ListeningTree> tree;
};

SharedTree& theSharedTree() {
    static SharedTree shared;
    return shared;
}

} // namespace

ListeningTree::ListeningTree(const std::vector<std::size_t>& parents) {
    nodes_.reserve(parents.size() + 1);
    nodes_.push_back(alloc<NSView>());
    for (const std::size_t parent : parents) {
        auto view = alloc<NSView>();
        nodes_[parent]->addSubview(view);
        nodes_.push_back(std::move(view));
    }
    std::vector<std::shared_ptr<NSView>> listeners(nodes_.begin() + 1, nodes_.end());
    shuffleListeners(listeners);
    for (const auto& view : listeners) {
        baseline_.add(view, [this](const auto&, int) { ++calls_; });
    }
    for (const auto& view : listeners) {
        view->registerStyleableChangeHandler(
            [this](const auto&, const auto&, ZelStyleChangeEvent) { ++calls_; });
    }
    calls_ = 0; // each registration was a call
}

ListeningTree& sharedTree(const std::string& name, std::vector<std::size_t> (*make)(std::size_t),
                          std::size_t size) {
    SharedTree& shared = theSharedTree();
    const auto domain = ZelStyleDomain::defaultDomain();
    if (!shared.tree || shared.name != name || shared.size != size) {
        shared.tree.reset();
        domain->setCurrentScheme(domain->lightScheme());
        shared = {name, size, std::make_unique<ListeningTree>(make(size))};
    } else {
        domain->setCurrentScheme(domain->lightScheme());
    }
    static_cast<void>(shared.tree->takeCalls());
    return *shared.tree;
}

void endSharedTree() {
    theSharedTree().tree.reset();
}

} // namespace zel::inline v1
