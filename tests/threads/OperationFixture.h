// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/support/Recorder.h"
#include "tests/support/Watchdog.h"
#include "tests/threads/Operations.h"

#include <algorithm>

namespace zeltest {

/// An object that does something while it ends.
class Ending : public zel::NSObject {
public:
    explicit Ending(std::function<void()> last) : last_(std::move(last)) {}
    Ending(const Ending&) = delete;
    Ending& operator=(const Ending&) = delete;
    ~Ending() override { last_(); }

private:
    const std::function<void()> last_;
};

/// Does every operation that docs/threads.md allows there in some place; what was under way goes
/// on, and no lock stays taken.
class OperationTests : public StylingTests {
protected:
    OperationTests() {
        domain->registerChangeHandler(
            [this](const auto&, const auto&, zel::ZelStyleChangeEvent event) { runOnce(event); },
            first);
        domain->registerChangeHandler(recorder.handler("second"), second);
    }

    /// Has each operation but those named done by `bringAbout`, which must get to where `now` is
    /// called.
    void doEach(const std::function<void()>& bringAbout, const Names& except = {}) {
        for (const Operation& each : allOperations()) {
            if (std::ranges::find(except, each.name) != except.end()) {
                continue;
            }
            SCOPED_TRACE(each.name);
            operation = &each;
            recorder.take();
            bringAbout();
            EXPECT_EQ(operation, nullptr) << "it wasn't done";
            operation = nullptr;
        }
        runElsewhere([this] { // stuck where a lock was left
            main->updateStyleWithChanges(nullptr);
            world.style->updateStyleWithChanges(nullptr);
            domain->notifyForStyleChangeOf(nullptr, {.force = true});
            domain->unregisterChangeHandler(world.object);
            (void)world.manager->activeMode();
            (void)zel::ZelStyleDomain::domainForIdentifier("elsewhere")->darkScheme();
            zel::NSNotificationCenter::defaultCenter().postNotificationName("elsewhere", nullptr);
        });
    }
    void now() {
        if (const Operation* each = std::exchange(operation, nullptr)) {
            each->run(world);
        }
    }
    void runOnce(zel::ZelStyleChangeEvent event) {
        if (event == zel::ZelStyleChangeEventChanged && inHandler) {
            std::exchange(inHandler, nullptr)();
        }
    }
    /// Brings about a delivery in which the first listener's handler does this.
    void deliver(std::function<void()> then) {
        inHandler = std::move(then);
        domain->notifyForStyleChangeOf(nullptr, {.force = true});
        EXPECT_GE(recorder.calls.size(), 1U) << "the second listener wasn't served";
    }

    const std::shared_ptr<zel::ZelStyleDomain> domain = zel::ZelStyleDomain::defaultDomain();
    const std::shared_ptr<zel::ZelStyle> main = addStyle(domain->defaultScheme(), "main");
    const std::shared_ptr<Styled> first = makeStyled();
    const std::shared_ptr<Styled> second = makeStyled();
    Recorder recorder;
    World world;
    const Operation* operation = nullptr;
    std::function<void()> inHandler;
};

} // namespace zeltest
