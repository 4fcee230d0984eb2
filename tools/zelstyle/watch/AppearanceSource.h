// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <memory>
#include <optional>

namespace zel::tool {

/// Something that drives the application object's appearance from an event loop.
/// Threads: the loop's. Failure: told on standard error; `exitCode` says what came of it.
class AppearanceSource {
public:
    AppearanceSource() = default;
    AppearanceSource(const AppearanceSource&) = delete;
    AppearanceSource& operator=(const AppearanceSource&) = delete;
    virtual ~AppearanceSource() = default;

    /// The descriptor to wait for, -1 for none, and its poll(2) events. Asked before each wait.
    [[nodiscard]] virtual int fileDescriptor() const = 0;
    [[nodiscard]] virtual short events() const = 0;
    /// How long to wait at most; none: for as long as it takes.
    [[nodiscard]] virtual std::optional<std::chrono::microseconds> nextTimeout() const = 0;

    /// Called after each wait, the main queue drained before it, with what is ready on the
    /// descriptor. False once the source has ended.
    virtual bool process(short ready) = 0;

    [[nodiscard]] virtual int exitCode() const = 0;
};

} // namespace zel::tool
