// SPDX-License-Identifier: Apache-2.0
// Has owners come and go, each with all that an application gives one, and whole domains, and looks
// whether the heap is as large at the end as it was after the first tenth of them.
#include "tests/figures/AllocationCounter.h"
#include "tests/support/CommandLine.h"
#include "tests/support/Sanitized.h"
#include "tests/support/Styling.h"

#include <cstdio>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

extern "C" std::size_t __sanitizer_get_current_allocated_bytes(); // where there is a sanitizer

namespace {

using namespace zel;
using namespace zeltest;

/// Bytes in use: what was asked of operator new, and what the C library has given out in all.
struct Heap {
    std::size_t asked = inUseByNew();
    std::size_t given = inUse();

    static std::size_t inUseByNew() {
        if constexpr (underSanitizer) {
            return __sanitizer_get_current_allocated_bytes();
        } else {
            return Allocations::now().liveBytes;
        }
    }
    static std::size_t inUse() {
#if defined(__GLIBC__)
        const auto info = mallinfo2();
        return info.uordblks + info.hblkhd;
#else
        return 0;
#endif
    }
};

/// Views and objects in the default domain, with handlers, identifiers, styles and observers.
class Owners {
public:
    Owners() {
        NSUserDefaults::standardUserDefaults().setStore(std::make_shared<NSUserDefaultsInMemory>());
        NSApplication::sharedApplication();
        ZelStyleManager::setup();
        stays_->registerStyleableChangeHandler(
            [this](const auto&, const auto&, auto) { ++calls_; });
    }

    [[nodiscard]] std::uint64_t calls() const noexcept { return calls_; }

    void run(std::uint64_t cycle) {
        const auto view = alloc<NSView>();
        const auto below = alloc<NSView>();
        stays_->addSubview(view);
        view->addSubview(below);
        const auto object = makePlain();
        listen(view, below, object, cycle);
        const auto child = main_->inheritedStyleWithChanges(
            [](const auto& parent, const auto& made) {
                made->setAccentColor(parent->labelColor());
            },
            "passing", domain_->lightScheme());
        view->setCustomZelStyleIdentifier("passing");
        below->setCustomZelStyleSchemeIdentifier(cycle % 2 == 0 ? "dark" : "light");
        child->addStyleUpdateObserver([this](const auto&, const auto&, bool) { ++calls_; }, object,
                                      cycle % 3 == 0);
        change(cycle);
        child->setValue(ZelAttributeValue(std::to_string(cycle)), "passing text");
        (void)child->effectiveValues();
        domain_->lightScheme()->removeStyle(child);
        view->removeFromSuperview();
    }

private:
    void listen(const std::shared_ptr<NSView>& view, const std::shared_ptr<NSView>& below,
                const std::shared_ptr<Plain>& object, std::uint64_t cycle) {
        for (std::uint64_t i = 0; i <= cycle % 3; ++i) {
            view->registerStyleableChangeHandler(
                [this](const auto&, const auto&, auto) { ++calls_; });
        }
        below->registerStyleableChangeHandler(
            [this](const auto& owner, const auto&, ZelStyleChangeEvent event) {
                ++calls_;
                if (event == ZelStyleChangeEventChanged) {
                    owner->unregisterStyleableChangeHandlers();
                }
            });
        domain_->registerChangeHandler(object);
        NSNotificationCenter::defaultCenter().addObserver(
            object, [this](const NSNotification&) { ++calls_; }, "cycle", view);
        view->addObserver(object, "cycle", NSKeyValueObservingOptions::Prior, this);
    }

    void change(std::uint64_t cycle) {
        if (cycle % 4 == 0) {
            main_->updateStyleWithChanges([&](const auto& changed) {
                changed->setLabelColor(NSColor::colorWithWhite(static_cast<double>(cycle), 1));
                return true;
            });
        }
        if (cycle % 10 == 0) {
            domain_->setCurrentScheme(cycle % 20 == 0 ? domain_->darkScheme()
                                                      : domain_->lightScheme());
        }
        NSNotificationCenter::defaultCenter().postNotificationName("cycle", nullptr);
    }

    const std::shared_ptr<ZelStyleDomain> domain_ = ZelStyleDomain::defaultDomain();
    const std::shared_ptr<NSView> stays_ = alloc<NSView>();
    const std::shared_ptr<ZelStyle> main_ =
        (ZelStyleDomain::setupStyles(), domain_->lightScheme()->styleForIdentifier("main"));
    std::uint64_t calls_ = 0;
};

/// Domains with schemes, styles and listeners; default value providers that fill those styles;
/// modes of the manager.
class Domains {
public:
    [[nodiscard]] std::uint64_t calls() const noexcept { return calls_; }

    void run(std::uint64_t cycle) {
        const auto provider = addProvider(cycle);
        const bool isRegistered = cycle % 2 == 0;
        fill(isRegistered ? ZelStyleDomain::domainForIdentifier("passing")
                          : alloc<ZelStyleDomain>()->initWithDomainIdentifier("passing"),
             cycle);
        addMode(ZelStyleManager::sharedStyleManager(), cycle);
        const auto manager = alloc<ZelStyleManager>(); // goes with its modes
        manager->init();
        manager->addMode(makeMode(cycle));
        manager->addMode(makeMode(cycle + 1));
        ZelStyle::removeDefaultValueProvider(provider);
        if (isRegistered) {
            ZelStyleDomain::domainForIdentifier("_reset");
        }
    }

private:
    std::shared_ptr<ZelStyleDefaultValueProvider> addProvider(std::uint64_t cycle) {
        auto provider = ZelStyleDefaultValueProvider::providerWithIdentifier(
            cycle % 3 == 0 ? "main" : "passing", std::vector<std::string>{"base"},
            [this](const auto& style, const auto&) {
                ++calls_;
                style->setValue(ZelAttributeValue(std::string("filled")), "passing text");
            });
        provider->setDidApplyBlock(
            [this](const auto&, const auto&, const auto&, const auto&) { ++calls_; });
        ZelStyle::addDefaultValueProvider(provider);
        return provider;
    }

    void fill(const std::shared_ptr<ZelStyleDomain>& domain, std::uint64_t cycle) {
        const auto view = alloc<NSView>();
        const auto count = [this](const auto&, const auto&, auto) { ++calls_; };
        domain->registerChangeHandler(count, view);
        domain->registerChangeHandler(count, stays_);
        for (const char* const identifier : {"default", "light", "dark", "passing"}) {
            const auto scheme = domain->schemeForIdentifier(identifier);
            const auto style = addStyle(scheme, "main");
            style->inheritedStyleWithChanges(
                [](const auto& parent, const auto& made) {
                    made->setAccentColor(parent->labelColor());
                },
                "passing", scheme);
            domain->setCurrentScheme(scheme);
        }
        domain->setSchemeFollowsSystem(cycle % 3 == 0);
        const auto loose = alloc<ZelStyleScheme>()->initWithIdentifier("loose", domain);
        loose->addStyle(domain->mainStyle());
    }

    static std::shared_ptr<ZelStyleManagerMode> makeMode(std::uint64_t cycle) {
        return alloc<ZelStyleManagerMode>()->initWithIdentifier("passing", cycle % 7, "Passing");
    }

    static void addMode(const std::shared_ptr<ZelStyleManager>& manager, std::uint64_t cycle) {
        const auto mode = makeMode(cycle);
        manager->addMode(mode);
        manager->setActiveModeIdentifier(cycle % 2 == 0 ? "passing" : "dark");
        manager->removeMode(mode);
    }

    const std::shared_ptr<NSView> stays_ = alloc<NSView>();
    std::uint64_t calls_ = 0;
};

/// Whether the heap is flat while what a class has come and go does so.
template <class Things>
bool isFlat(const char* name, std::uint64_t cycles, std::uint64_t callsOfEach) {
    constexpr std::size_t allowed = 4096; // tables that happen to be larger at the one moment
    Things things;
    std::uint64_t cycle = 0;
    while (cycle < cycles / 10) {
        things.run(cycle++);
    }
    const Heap before;
    while (cycle < cycles) {
        things.run(cycle++);
    }
    const Heap after;
    std::printf("%s: %llu cycles, %llu calls: %zu bytes asked for, then %zu; %zu bytes in use, "
                "then %zu\n",
                name, static_cast<unsigned long long>(cycles),
                static_cast<unsigned long long>(things.calls()), before.asked, after.asked,
                before.given, after.given);
    return after.asked <= before.asked + allowed && after.given <= before.given + allowed &&
           things.calls() > callsOfEach * cycles;
}

} // namespace

int main(int count, char** words) {
    std::uint64_t cycles = 0;
    zeltest::CommandLine program("Has owners come and go, then a fiftieth of as many domains. Ends "
                                 "with 0 where the heap was as large at the end as after the first "
                                 "tenth of them, with 1 where it was not.");
    program.add_option("cycles", cycles, "How many owners")
        ->required()
        ->check(CLI::Range(1000, 1'000'000'000));
    program.read(count, words);
    const bool owners = isFlat<Owners>("owners", cycles, 5);
    const bool domains = isFlat<Domains>("domains", cycles / 50, 20);
    return owners && domains ? 0 : 1;
}
