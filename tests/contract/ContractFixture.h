// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/contract/Toolkit.h"
#include "tests/support/Recorder.h"

#include <string>

namespace zeltest {

/// The toolkit of this program; made by `main`.
Toolkit& toolkit();

/// The program's own path, to start it afresh.
const std::string& programPath();

/// A fresh library on the toolkit's event loop: light and dark main styles, and a style "sidebar"
/// in both schemes; the current scheme follows the system, which is light.
class Contract : public StylingTests {
protected:
    using Widget = Toolkit::Widget;

    void SetUp() override {
        domain->setSchemeFollowsSystem(true);
        toolkit().connect();
    }
    void TearDown() override { toolkit().disconnect(); }

    /// Has the widget's styleable record its deliveries under a name, and then do what it is given
    /// to do; not so at the registration. Returns the widget.
    Widget listen(Widget widget, const std::string& name, std::function<void()> then = nullptr) {
        toolkit().styleableOf(widget)->registerStyleableChangeHandler(
            [record = recorder.handler(name),
             then = std::move(then)](const auto& owner, const auto& style, auto event) {
                if (event == zel::ZelStyleChangeEventInitial) {
                    return;
                }
                record(owner, style, event);
                if (then) {
                    then();
                }
            });
        return widget;
    }
    /// The system turns dark or light; the toolkit's event loop delivers it.
    static void turnDark() {
        makeSystem("NSAppearanceNameDarkAqua");
        toolkit().settle();
    }
    static void turnLight() {
        makeSystem("NSAppearanceNameAqua");
        toolkit().settle();
    }
    [[nodiscard]] std::shared_ptr<zel::ZelStyle> styleOf(Widget widget) const {
        return domain->styleFor(toolkit().styleableOf(widget));
    }

    Recorder recorder;
    const std::shared_ptr<zel::ZelStyleDomain> domain = zel::ZelStyleDomain::defaultDomain();
    const std::shared_ptr<zel::ZelStyle> light = addStyle(domain->lightScheme(), "main");
    const std::shared_ptr<zel::ZelStyle> dark = addStyle(domain->darkScheme(), "main");
    const std::shared_ptr<zel::ZelStyle> lightSidebar = addChildStyle(light, "sidebar");
    const std::shared_ptr<zel::ZelStyle> darkSidebar = addChildStyle(dark, "sidebar");
};

} // namespace zeltest
