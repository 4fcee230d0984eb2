// SPDX-License-Identifier: Apache-2.0
// Has owners come and go, each with all that an application gives one, and looks whether the heap
// is as large at the end as it was after the first tenth of them.
// usage: figure_cycles CYCLES
#include "tests/figures/AllocationCounter.h"
#include "tests/support/Styling.h"

#include <cstdio>
#include <cstdlib>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace {

using namespace zel;
using namespace zeltest;

/// Bytes in use: what was asked of operator new, and what the C library has given out in all.
struct Heap {
    std::size_t asked = Allocations::now().liveBytes;
    std::size_t given = inUse();

    static std::size_t inUse() {
#if defined(__GLIBC__)
        const auto info = mallinfo2();
        return info.uordblks + info.hblkhd;
#else
        return 0;
#endif
    }
};

class Cycles {
public:
    Cycles() {
        NSUserDefaults::standardUserDefaults().setStore(std::make_shared<DefaultsInMemory>());
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

} // namespace

int main(int count, char** words) {
    const std::uint64_t cycles = count > 1 ? std::strtoull(words[1], nullptr, 10) : 0;
    constexpr std::size_t allowed = 4096; // tables that happen to be larger at the one moment
    if (cycles < 1000) {
        std::fputs("usage: figure_cycles CYCLES, at least 1000\n", stderr);
        return 2;
    }
    Cycles owners;
    std::uint64_t cycle = 0;
    while (cycle < cycles / 10) {
        owners.run(cycle++);
    }
    const Heap before;
    while (cycle < cycles) {
        owners.run(cycle++);
    }
    const Heap after;
    std::printf("%llu cycles, %llu calls: %zu bytes asked for, then %zu; %zu bytes in use, then "
                "%zu\n",
                static_cast<unsigned long long>(cycles),
                static_cast<unsigned long long>(owners.calls()), before.asked, after.asked,
                before.given, after.given);
    const bool isFlat =
        after.asked <= before.asked + allowed && after.given <= before.given + allowed;
    return isFlat && owners.calls() > 5 * cycles ? 0 : 1;
}
