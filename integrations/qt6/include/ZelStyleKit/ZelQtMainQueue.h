// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/Export.h>

#include <memory>

namespace zel::inline v1 {

/// Drains the library's main queue from Qt's event loop, and has names compared by Qt, in its
/// default locale (`localizedCaseInsensitiveCompare`), as long as it lives. An application makes
/// one, right after its QApplication or QGuiApplication, and sets a comparison of its own later.
/// Owns: the queue's wake hook and the host's comparison. Threads: made and destroyed on the main
/// thread; tasks may be added on any. Failure: none; tasks must not throw, as nothing that Qt's
/// event loop calls may.
class ZEL_EXPORT ZelQtMainQueue final {
public:
    ZelQtMainQueue();
    ~ZelQtMainQueue();
    ZelQtMainQueue(const ZelQtMainQueue&) = delete;
    ZelQtMainQueue& operator=(const ZelQtMainQueue&) = delete;

private:
    class Drainer;
    struct Waker;
    const std::unique_ptr<Drainer> drainer_;
    const std::shared_ptr<Waker> waker_; // shared with hooks that are running on other threads
};

} // namespace zel::inline v1
