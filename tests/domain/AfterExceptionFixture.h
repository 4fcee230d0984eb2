// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/support/Recorder.h"
#include "tests/support/Watchdog.h"

#include <stdexcept>

namespace zeltest {

struct Failure : std::runtime_error {
    Failure() : std::runtime_error("on purpose") {}
};

/// A handler changes the tables, then raises; whatever comes next finds them as they were left.
class AfterExceptionTests : public StylingTests {
protected:
    AfterExceptionTests() {
        for (const auto& [name, owner] :
             {std::pair("a", a), std::pair("b", b), std::pair("c", c)}) {
            domain->registerChangeHandler(
                recorder.handler(name, [this, which = name] { act(which); }), owner);
        }
        recorder.take();
    }

    void act(const std::string& name) {
        if (name == acting) {
            acting.clear(); // once
            if (action) {
                action();
            }
            throw Failure();
        }
    }
    /// Has a listener do something and raise in a forced notification to all or to a target.
    void raiseIn(const std::string& name, std::function<void()> then,
                 const std::shared_ptr<zel::NSObject>& target = nullptr) {
        acting = name;
        action = std::move(then);
        EXPECT_THROW(domain->notifyForStyleChangeOf(target, {.force = true}), Failure);
        recorder.take();
    }
    /// Who is called next, by a notification that another thread sends.
    Names calledNext(const std::shared_ptr<zel::NSObject>& target = nullptr) {
        runElsewhere([&] { domain->notifyForStyleChangeOf(target, {.force = true}); });
        return recorder.takeNames();
    }

    const std::shared_ptr<zel::ZelStyleDomain> domain = zel::ZelStyleDomain::defaultDomain();
    const std::shared_ptr<zel::ZelStyle> main = addStyle(domain->defaultScheme(), "main");
    const std::shared_ptr<zel::ZelStyle> dark = addStyle(domain->darkScheme(), "main");
    std::shared_ptr<Styled> a = makeStyled();
    std::shared_ptr<Styled> b = makeStyled(a);
    std::shared_ptr<Styled> c = makeStyled(b);
    Recorder recorder;
    std::string acting;
    std::function<void()> action;
};

} // namespace zeltest
