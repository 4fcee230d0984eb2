// SPDX-License-Identifier: Apache-2.0
// Does a piece of work once, in `measured`, for somebody who counts its instructions.
// usage: figures_work WORK SIZE
#include <ZelStyleKit/ZelStyleKit.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace zel;

using Work = std::function<void()>;
using Views = std::vector<std::shared_ptr<NSView>>;

[[gnu::noinline]] void measured(const Work& work) {
    work();
}

std::shared_ptr<ZelStyleScheme> scheme() {
    return ZelStyleDomain::defaultDomain()->defaultScheme();
}

std::shared_ptr<ZelStyle> addMain() {
    auto main = alloc<ZelStyle>()->initWithIdentifier("main", scheme());
    scheme()->addStyle(main);
    return main;
}

void listen(const std::shared_ptr<NSView>& view) {
    view->registerStyleableChangeHandler([](const auto&, const auto&, auto) {});
}

/// A tree of as many views, four to a parent, each a listener: registered in an order that is not
/// that of their addresses, the same in every run. The last one is the root, which doesn't listen.
Views listeningTree(std::size_t size) {
    Views views;
    for (std::size_t i = 0; i < size; ++i) {
        views.push_back(alloc<NSView>());
        if (i > 0) {
            views[(i - 1) / 4]->addSubview(views[i]);
        }
    }
    Views shuffled = views;
    std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937(1));
    for (const auto& view : shuffled) {
        listen(view);
    }
    const auto root = alloc<NSView>();
    root->addSubview(views.front());
    views.push_back(root);
    return views;
}

/// Main styles in the light and in the dark scheme, and the former as the current one.
void addLightAndDark() {
    const auto domain = ZelStyleDomain::defaultDomain();
    for (const auto& each : {domain->lightScheme(), domain->darkScheme()}) {
        each->addStyle(alloc<ZelStyle>()->initWithIdentifier("main", each));
    }
    domain->setCurrentScheme(domain->lightScheme());
}

/// A switch from light to dark with so many listeners, the third of its kind.
Work switching(std::size_t size) {
    addLightAndDark();
    const auto domain = ZelStyleDomain::defaultDomain();
    const Views views = listeningTree(size);
    domain->setCurrentScheme(domain->darkScheme());
    domain->setCurrentScheme(domain->lightScheme());
    return [=] { (void)views, domain->setCurrentScheme(domain->darkScheme()); };
}

/// The same after one of the views got another identifier.
Work pinningAndSwitching(std::size_t size) {
    addLightAndDark();
    const auto domain = ZelStyleDomain::defaultDomain();
    const Views views = listeningTree(size);
    const auto pinAndSwitch = [=](std::string_view identifier, const auto& scheme) {
        views[size / 2]->setCustomZelStyleIdentifier(identifier);
        domain->setCurrentScheme(scheme);
    };
    pinAndSwitch("one", domain->darkScheme());
    pinAndSwitch("other", domain->lightScheme());
    return [=] { pinAndSwitch("one", domain->darkScheme()); };
}

/// Another scheme for the root above so many listeners.
Work branch(std::size_t size) {
    addLightAndDark();
    const Views views = listeningTree(size);
    views.back()->setCustomZelStyleSchemeIdentifier("dark");
    views.back()->setCustomZelStyleSchemeIdentifier("light");
    return [=] { views.back()->setCustomZelStyleSchemeIdentifier("dark"); };
}

/// The update of a style that as many child styles follow, each with a listener.
Work update(std::size_t size) {
    auto main = addMain();
    Views views;
    for (std::size_t i = 0; i < size; ++i) {
        const std::string identifier = "child" + std::to_string(i);
        main->inheritedStyleWithChanges(
            [](const auto& parent, const auto& child) {
                child->setLabelColor(parent->accentColor());
            },
            identifier, scheme());
        views.push_back(alloc<NSView>());
        views.back()->setCustomZelStyleIdentifier(identifier);
        listen(views.back());
    }
    for (int round = 0; round < 3; ++round) {
        main->updateStyleWithChanges(nullptr);
    }
    return [=] { main->updateStyleWithChanges(nullptr); };
}

/// Another identifier for one view above 200 listeners, with so many others elsewhere.
Work subtree(std::size_t size) {
    addMain();
    Views views{alloc<NSView>()};
    const auto root = alloc<NSView>();
    for (std::size_t i = 0; i < size + 200; ++i) {
        views.push_back(alloc<NSView>());
        (i < 200 ? views.front() : root)->addSubview(views.back());
        listen(views.back());
    }
    views.push_back(root);
    views.front()->setCustomZelStyleSchemeIdentifier("light");
    views.front()->setCustomZelStyleSchemeIdentifier("dark");
    return [=] { views.front()->setCustomZelStyleSchemeIdentifier("light"); };
}

/// The style of the last of a chain of views, whose first gets another identifier.
Work parents(std::size_t size) {
    addMain();
    Views views{alloc<NSView>()};
    for (std::size_t i = 1; i < size; ++i) {
        views.push_back(alloc<NSView>());
        views[i - 1]->addSubview(views.back());
    }
    listen(views.back());
    return [=] {
        views.front()->setCustomZelStyleIdentifier("other");
        (void)ZelStyle::forStyleable(views.back());
    };
}

/// The same where each has to be asked for its parent.
Work askedParents(std::size_t size) {
    addMain();
    struct Asked : NSObject, ZelStyleable {
        std::shared_ptr<NSObject> above;
        std::optional<std::string> domainIdentifierOfZelStyleable() const override {
            return std::nullopt;
        }
        std::shared_ptr<NSObject> parentZelStyleable() const override { return above; }
        const ZelStyleable* asZelStyleable() const noexcept override { return this; }
    };
    std::vector<std::shared_ptr<Asked>> chain{alloc<Asked>()};
    for (std::size_t i = 1; i < size; ++i) {
        chain.push_back(alloc<Asked>());
        chain.back()->above = chain[i - 1];
    }
    return [=] { (void)ZelStyle::forStyleable(chain.back()); };
}

/// An update of the first of a chain of styles, each the parent of the next, and a read of the
/// last.
Work inheritance(std::size_t size) {
    std::vector<std::shared_ptr<ZelStyle>> chain{addMain()};
    for (std::size_t i = 1; i < size; ++i) {
        chain.push_back(chain.back()->inheritedStyleWithChanges([](const auto&, const auto&) {},
                                                                std::to_string(i), scheme()));
    }
    chain.front()->updateStyleWithChanges(nullptr);
    return [=] {
        chain.front()->updateStyleWithChanges(nullptr);
        (void)chain.back()->labelColor();
    };
}

/// A thousand reads of a style with so many ancestors.
Work reads(std::size_t size) {
    std::vector<std::shared_ptr<ZelStyle>> chain{addMain()};
    for (std::size_t i = 0; i < size; ++i) {
        chain.push_back(alloc<ZelStyle>()->initWithIdentifier("child", scheme(), chain.back()));
    }
    (void)chain.back()->labelColor();
    return [=] {
        for (int i = 0; i < 1000; ++i) {
            (void)chain.back()->labelColor();
            (void)chain.back()->effectiveValueForAttribute("labelColor");
        }
    };
}

/// A listener that comes and goes with so many others there.
Work registration(std::size_t size) {
    addMain();
    Views views;
    for (std::size_t i = 0; i <= size; ++i) {
        views.push_back(alloc<NSView>());
        if (i < size) {
            listen(views.back());
        }
    }
    return [=] {
        for (int i = 0; i < 100; ++i) {
            listen(views.back());
            views.back()->unregisterStyleableChangeHandlers();
        }
    };
}

} // namespace

int main(int argc, char** argv) {
    const std::map<std::string, Work (*)(std::size_t)> works{
        {"switch", switching},
        {"pin-and-switch", pinningAndSwitching},
        {"branch", branch},
        {"update", update},
        {"subtree", subtree},
        {"parents", parents},
        {"inheritance", inheritance},
        {"asked-parents", askedParents},
        {"reads", reads},
        {"registration", registration}};
    const auto found = argc == 3 ? works.find(argv[1]) : works.end();
    if (found == works.end()) {
        std::fputs("usage: figures_work WORK SIZE\n", stderr);
        return 2;
    }
    std::thread([] {}).join(); // from here on the library's atomic operations are atomic
    measured(found->second(std::strtoul(argv[2], nullptr, 10)));
    return 0;
}
