// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/domain/DomainInternals.h"
#include "tests/support/Recorder.h"

namespace zeltest {

/// Listeners that register, unregister and end listeners while a notification runs. `act` is what
/// the one named "actor" does when it is called by a notification, once.
class TableChangeTests : public StylingTests {
protected:
    const std::shared_ptr<zel::ZelStyleDomain> domain = zel::ZelStyleDomain::defaultDomain();
    const std::shared_ptr<zel::ZelStyle> plain = addStyle(domain->defaultScheme(), "main");
    Recorder recorder;
    std::shared_ptr<Styled> before = makeStyled();
    std::shared_ptr<Styled> actor = makeStyled();
    std::shared_ptr<Styled> after = makeStyled();
    std::shared_ptr<Styled> added = makeStyled();
    std::function<void()> act;

    std::function<void()> actOnce() {
        return [this] {
            if (const auto acting = std::exchange(act, nullptr)) {
                acting();
            }
        };
    }
    void listenAs(const std::string& name, const std::shared_ptr<Styled>& owner) {
        domain->registerChangeHandler(recorder.handler(name, name == "actor" ? actOnce() : nullptr),
                                      owner);
    }
    void listenAsObject(const std::string& name, const std::shared_ptr<Styled>& object) {
        object->onStyleChange = recorder.objectHandler(name, name == "actor" ? actOnce() : nullptr);
        domain->registerChangeHandler(object);
    }
    void listen() {
        listenAs("before", before);
        listenAs("actor", actor);
        listenAs("after", after);
        recorder.take();
    }
    void listenAsObjects() {
        listenAsObject("before", before);
        listenAsObject("actor", actor);
        listenAsObject("after", after);
        recorder.take();
    }
    Names force() {
        domain->notifyForStyleChangeOf(nullptr, {.force = true});
        return recorder.takeNames();
    }
};

} // namespace zeltest
