// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/support/Recorder.h"

#include <ZelStyleKit/ZelQtMainQueue.h>
#include <ZelStyleKit/ZelQtStyleable.h>

#include <QApplication>
#include <QColor>

#include <ostream>

/// Colours in the messages of tests.
inline void PrintTo(const QColor& color, std::ostream* out) {
    *out << (color.isValid() ? qPrintable(color.name(QColor::HexArgb)) : "invalid");
}

namespace zeltest {

/// A fresh library on Qt's event loop, with main styles that follow the system; which is light.
class QtTests : public StylingTests {
protected:
    QtTests() { domain->setSchemeFollowsSystem(true); }

    static void makeDark() { turn("NSAppearanceNameDarkAqua"); }
    static void makeLight() { turn("NSAppearanceNameAqua"); }

    const std::shared_ptr<zel::ZelStyleDomain> domain = zel::ZelStyleDomain::defaultDomain();
    const std::shared_ptr<zel::ZelStyle> light = addStyle(domain->lightScheme(), "main");
    const std::shared_ptr<zel::ZelStyle> dark = addStyle(domain->darkScheme(), "main");
    const zel::ZelQtMainQueue queue;
    Recorder recorder;

private:
    static void turn(std::string_view appearance) {
        makeSystem(appearance);
        QCoreApplication::processEvents();
        QCoreApplication::processEvents(); // Qt hands on an application's palette in its next turn
    }
};

inline std::shared_ptr<zel::ZelQtStyleable> styleableOf(QWidget& widget) {
    return zel::ZelQtStyleable::of(widget);
}

} // namespace zeltest
